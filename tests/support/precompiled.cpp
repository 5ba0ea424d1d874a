// The translation unit that the precompiled GoogleTest header of the suites is made with.
