# The front door. `make help` lists the commands.
PRESETS := release sanitize
JOBS ?= $(shell nproc)
DEMO_ROOT := build/release/demo-root

.PHONY: help demo check bench format lint parameters aarch64 shell clean dependencies-% $(PRESETS)

help:
	@echo "make demo        build, enter the sandboxed router, show and change parameters there"
	@echo "make shell       a shell in the sandboxed router"
	@echo "make check       release and sanitizer build, all tests"
	@echo "make bench       benchmarks against raw libuci and popen, library size"
	@echo "make aarch64     cross-compile for 64-bit Arm"
	@echo "make format      format the sources;  make lint  check format and run clang-tidy"
	@echo "make parameters  renew docs/parameters.md from model/"
	@echo "make clean       remove the build trees"

dependencies-%:
	@scripts/install-dependencies $(subst +, ,$*)

build/%/build.ninja:
	@cmake --preset $* >build-configure.log 2>&1 || { cat build-configure.log; rm -f build-configure.log; exit 1; }
	@grep libuci: build-configure.log; rm -f build-configure.log

release: dependencies-build+check+bench build/release/build.ninja
	@cmake --build --preset release -j $(JOBS)

sanitize: dependencies-build+check+bench build/sanitize/build.ninja
	@cmake --build --preset sanitize -j $(JOBS)

$(DEMO_ROOT): release
	@cmake --build --preset release --target demo-root

demo: $(DEMO_ROOT)
	@scripts/demo $(DEMO_ROOT)

shell: $(DEMO_ROOT)
	@router/enter $(DEMO_ROOT)

check: $(PRESETS)
	@ctest --preset release -j $(JOBS)
	@ctest --preset sanitize -j $(JOBS)

bench: release
	@scripts/bench build/release

aarch64: dependencies-build+cross build/aarch64/build.ninja
	@cmake --build --preset aarch64 -j $(JOBS)

format: dependencies-check
	@git ls-files '*.h' '*.cpp' | xargs clang-format -i

lint: dependencies-check build/release/build.ninja
	@scripts/lint build/release

parameters:
	@tools/parameters-doc > docs/parameters.md

clean:
	rm -rf build
