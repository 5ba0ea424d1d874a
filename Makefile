# The front door: everything goes through CMake presets under build/.
#   make demo   install what is missing, build, and run the demonstration program
#   make test   install what is missing, build, and run every test
#   make asan   the whole suite again under AddressSanitizer and UndefinedBehaviorSanitizer
#   make build  just build (release)
JOBS ?= $(shell nproc 2>/dev/null || echo 2)

.PHONY: all deps build demo test asan clean

all: build

deps:
	@scripts/install-deps.sh

build: deps
	cmake --preset release
	cmake --build --preset release -j $(JOBS)

demo: build
	build/release/tools/mox-demo

test: build
	ctest --preset release -j $(JOBS)

asan: deps
	cmake --preset asan
	cmake --build --preset asan -j $(JOBS)
	ctest --preset asan -j $(JOBS)

clean:
	rm -rf build
