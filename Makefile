# The front door. `make help` lists the commands.
JOBS ?= $(shell nproc)
FUZZ_SECONDS ?= 30
DEMO_ROOT := build/release/demo-root

.PHONY: help demo shell test check fuzz fuzz-model faults bench aarch64 test-arm64 lint format parameters clean release sanitize $(DEMO_ROOT)

help:
	@echo "make demo        build, enter the sandboxed router, show and change parameters there"
	@echo "make shell       a shell in the sandboxed router"
	@echo "make test        release build, the quick tests; T=wan those with wan in their name"
	@echo "make check       release and sanitizer build, all tests"
	@echo "make fuzz        fuzz the parser of scan logs for FUZZ_SECONDS (30)"
	@echo "make fuzz-model  random calls of every handler under the sanitizers, for SECONDS (60); SEED=..."
	@echo "make faults      every call of some operations fails once, or kills; SECONDS=60 a part; SEED=..."
	@echo "make bench       benchmarks against raw libuci and popen, library size; SHORT=1 a trial run"
	@echo "make aarch64     cross-compile for 64-bit Arm; clang, libc++ and musl compile, too"
	@echo "make test-arm64  walk, reference and quick tests of that build, emulated; at most five minutes once they are built"
	@echo "make lint        format, scripts, links, clang-tidy on what changed; ALL=1 clang-tidy on everything"
	@echo "make format      format the sources"
	@echo "make parameters  renew docs/parameters*.md, deviations.md and reference/ by running the library"
	@echo "make clean       remove the build trees"

$(DEMO_ROOT):
	@router/enter --possible
	@scripts/install-dependencies build
	@scripts/configure release
	@cmake --build --preset release -j $(JOBS) --target demo-root

demo: $(DEMO_ROOT)
	@scripts/demo $(DEMO_ROOT)

shell: $(DEMO_ROOT)
	@router/enter $(DEMO_ROOT)

release sanitize:
	@scripts/install-dependencies build test
	@scripts/configure $@ tests
	@cmake --build --preset $@ -j $(JOBS)

test: release
	@ctest --preset release --no-tests=error -j $(JOBS) $(if $(T),-R '$(T)',-L quick)

# Tests wait as much as they work: one more at a time than there are processors.
check:
	@scripts/install-dependencies build test
	@scripts/configure sanitize tests & other=$$!; scripts/configure release tests; own=$$?; wait $$other && exit $$own
	@cmake --build --preset release -j $(JOBS)
	@cmake --build --preset sanitize -j $(JOBS)
	@ctest --preset release --no-tests=error -j $$(($(JOBS) + 1))
	@ctest --preset sanitize --no-tests=error -j $$(($(JOBS) + 1))

fuzz:
	@scripts/install-dependencies build fuzz
	@scripts/fuzz build $(FUZZ_SECONDS)

fuzz-model: sanitize
	@router/enter build/sanitize/tests/model_fuzz-root /usr/lib/router/tests/model_fuzz $(or $(SECONDS),60) $(SEED)

faults: release
	@router/enter build/release/tests/faults-root /usr/lib/router/tests/faults_test $(or $(SECONDS),0) $(SEED)

bench:
	@router/enter --possible
	@scripts/install-dependencies build bench
	@scripts/configure release bench
	@cmake --build --preset release -j $(JOBS) --target datamodel_bench demo-root
	@SHORT=$(SHORT) scripts/bench build/release

aarch64:
	@scripts/install-dependencies build cross
	@scripts/configure aarch64
	@cmake --build --preset aarch64 -j $(JOBS)
	@scripts/check-library build/aarch64
	@scripts/check-portable build/aarch64

test-arm64:
	@scripts/install-dependencies build cross emulation
	@scripts/configure aarch64 tests
	@cmake --build --preset aarch64 -j $(JOBS)
	@timeout 300 ctest --preset aarch64 --no-tests=error -j $(JOBS) -E 'model_test|router_test|promises|live|record|fuzz|faults'

lint:
	@scripts/install-dependencies build lint
	@scripts/configure release
	@ALL=$(ALL) scripts/lint build/release

format:
	@scripts/install-dependencies lint
	@git ls-files '*.h' '*.cpp' | xargs clang-format -i

parameters:
	@router/enter --possible
	@scripts/install-dependencies build
	@scripts/configure release
	@cmake --build --preset release -j $(JOBS) --target reference-root
	@tools/reference/make-reference build/release/tools/reference/reference-root build/release/tools/reference/reference

clean:
	rm -rf build
