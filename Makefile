# The front door: everything goes through CMake presets under build/.
#   make demo   install what is missing, build, and run the demonstration program
#   make test   install what is missing, build, and run every test
#   make asan   the whole suite again under AddressSanitizer and UndefinedBehaviorSanitizer
#   make build  just build (release)
#   make windows  install the cross compilers and wine, build mox.dll for x64 and x86, and run the
#               x64 test suite under wine
#   make bench  install the benchmark packages, build the benchmarks (release) and run them;
#               pass options through BENCH_ARGS, e.g. BENCH_ARGS=--benchmark_min_time=0.1
JOBS ?= $(shell nproc 2>/dev/null || echo 2)

.PHONY: all deps build demo test asan windows bench clean

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

# Wine keeps its own Windows installation in the build folder; it is made once, before the tests run
# side by side.
WINE := /usr/lib/wine/wine64
WINE_ENV := WINEPREFIX=$(CURDIR)/build/mingw-x64/wineprefix WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml=;winedbg.exe=d"

windows:
	@scripts/install-deps.sh windows
	cmake --preset mingw-x64
	cmake --build --preset mingw-x64 -j $(JOBS)
	cmake --preset mingw-x86
	cmake --build --preset mingw-x86 -j $(JOBS)
	$(WINE_ENV) $(WINE) wineboot --init
	ctest --test-dir build/mingw-x64 -j $(JOBS) --output-on-failure

bench:
	@scripts/install-deps.sh bench
	cmake -S . -B build/bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DMOX_BUILD_BENCH=ON \
		-DMOX_BUILD_TESTS=OFF -DMOX_BUILD_TOOLS=OFF
	cmake --build build/bench -j $(JOBS)
	build/bench/bench/checksum_bench $(BENCH_ARGS)

clean:
	rm -rf build
