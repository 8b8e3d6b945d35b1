# One-command set-up: every target installs what is missing, configures and builds first.
BUILD ?= build
JOBS ?= $(shell nproc)
EXAMPLE ?= examples/scene.dae

.PHONY: all deps configure build run test sanitize clean fuzz

all: build

deps:
	@scripts/install-deps.sh

configure: deps
	cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=Release

build: configure
	cmake --build $(BUILD) -j$(JOBS)

# Builds only what it runs: the libraries and the tool, not the tests and benchmarks.
run: configure
	cmake --build $(BUILD) --target zyldae -j$(JOBS)
	./$(BUILD)/tools/zyldae/zyldae info $(EXAMPLE)

test: build
	cd $(BUILD) && ctest --output-on-failure -j$(JOBS)

# The whole test suite under AddressSanitizer and UndefinedBehaviorSanitizer.
sanitize: deps
	cmake -S . -B build-sanitize -DCMAKE_BUILD_TYPE=RelWithDebInfo -DZYL_SANITIZE=ON -DZYL_BUILD_BENCH=OFF
	cmake --build build-sanitize -j$(JOBS)
	cd build-sanitize && ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
		ctest --output-on-failure -j$(JOBS)

clean:
	rm -rf $(BUILD) build-sanitize

# Fuzzing with libFuzzer (clang). Runs FUZZ_SECONDS (default 600) seeded with the example scenes,
# the fuzz regression inputs and, when present, ../shared/corpus. Findings land in
# fuzz-out/findings; keep each crashing input in tests/data/fuzz as a regression test.
FUZZ_SECONDS ?= 600
fuzz:
	WITH_CLANG=1 scripts/install-deps.sh
	CC=clang CXX=clang++ cmake -S . -B build-fuzz -DCMAKE_BUILD_TYPE=RelWithDebInfo -DZYL_FUZZ=ON \
		-DZYL_BUILD_TESTS=OFF -DZYL_BUILD_BENCH=OFF
	cmake --build build-fuzz --target read_fuzzer -j$(JOBS)
	mkdir -p fuzz-out/corpus fuzz-out/findings
	./build-fuzz/fuzz/read_fuzzer -max_total_time=$(FUZZ_SECONDS) -max_len=262144 -timeout=10 \
		-rss_limit_mb=2048 -artifact_prefix=fuzz-out/findings/ fuzz-out/corpus examples tests/data/fuzz \
		$(wildcard ../shared/corpus/*/)
