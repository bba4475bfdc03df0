# The front door. `make help` lists the commands.
PRESETS := release sanitize
JOBS ?= $(shell nproc)
FUZZ_SECONDS ?= 30
DEMO_ROOT := build/release/demo-root

.PHONY: help demo check fuzz bench format lint parameters aarch64 shell clean $(PRESETS) $(DEMO_ROOT)

help:
	@echo "make demo        build, enter the sandboxed router, show and change parameters there"
	@echo "make shell       a shell in the sandboxed router"
	@echo "make check       release and sanitizer build, all tests"
	@echo "make fuzz        fuzz the parser of scan logs for FUZZ_SECONDS (30)"
	@echo "make bench       benchmarks against raw libuci and popen, library size"
	@echo "make aarch64     cross-compile for 64-bit Arm"
	@echo "make format      format the sources;  make lint  check format and run clang-tidy"
	@echo "make parameters  renew docs/parameters.md from model/"
	@echo "make clean       remove the build trees"

dependencies-%:
	@scripts/install-dependencies $(subst +, ,$*)

configure-%:
	@mkdir -p build
	@cmake --preset $* >build/$*.log 2>&1 || { cat build/$*.log; exit 1; }
	@grep libuci: build/$*.log

$(PRESETS): %: dependencies-build+test+bench
	@$(MAKE) --no-print-directory configure-$*
	@cmake --build --preset $* -j $(JOBS)

$(DEMO_ROOT): dependencies-build
	@$(MAKE) --no-print-directory configure-release
	@cmake --build --preset release -j $(JOBS) --target demo-root

demo: $(DEMO_ROOT)
	@scripts/demo $(DEMO_ROOT)

shell: $(DEMO_ROOT)
	@router/enter $(DEMO_ROOT)

check: $(PRESETS)
	@for preset in $(PRESETS); do ctest --preset $$preset --no-tests=error -j $(JOBS) || exit 1; done

fuzz: dependencies-fuzz
	@scripts/fuzz build $(FUZZ_SECONDS)

bench: release
	@scripts/bench build/release

aarch64: dependencies-build+cross
	@$(MAKE) --no-print-directory configure-aarch64
	@cmake --build --preset aarch64 -j $(JOBS)

format: dependencies-lint
	@git ls-files '*.h' '*.cpp' | xargs clang-format -i

lint: dependencies-build+test+bench+lint
	@$(MAKE) --no-print-directory configure-release
	@scripts/lint build/release

parameters:
	@tools/parameters-doc > docs/parameters.md

clean:
	rm -rf build
