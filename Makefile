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

# Fuzzing with libFuzzer (clang), both reading modes (the input's last byte chooses), byte and
# structural mutations, the COLLADA dictionary. Runs FUZZ_SECONDS (default 600) seeded with the
# example scenes, the fuzz regression inputs and, when present, ../shared/corpus, all found by
# absolute path and none cut short. An input that takes more than FUZZ_INPUT_SECONDS or
# FUZZ_INPUT_MB is a finding like a crash, an undefined behaviour or a broken scene invariant;
# the run goes on past findings, which land in fuzz-out/findings. Keep each in tests/data/fuzz
# as a regression test.
FUZZ_SECONDS ?= 600
FUZZ_INPUT_SECONDS ?= 10
FUZZ_INPUT_MB ?= 1024
FUZZ_SEEDS = $(CURDIR)/examples $(CURDIR)/tests/data/fuzz $(wildcard $(abspath $(CURDIR)/../shared/corpus)/*/)
fuzz:
	WITH_CLANG=1 scripts/install-deps.sh
	CC=clang CXX=clang++ cmake -S . -B build-fuzz -DCMAKE_BUILD_TYPE=RelWithDebInfo -DZYL_FUZZ=ON \
		-DZYL_BUILD_TESTS=OFF -DZYL_BUILD_BENCH=OFF
	cmake --build build-fuzz --target read_fuzzer -j$(JOBS)
	mkdir -p fuzz-out/corpus fuzz-out/findings
	ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 \
	./build-fuzz/fuzz/read_fuzzer -fork=1 -ignore_crashes=1 -ignore_timeouts=1 -ignore_ooms=1 \
		-max_total_time=$(FUZZ_SECONDS) -timeout=$(FUZZ_INPUT_SECONDS) -rss_limit_mb=$(FUZZ_INPUT_MB) \
		-malloc_limit_mb=$(FUZZ_INPUT_MB) -dict=$(CURDIR)/fuzz/collada.dict \
		-max_len=$$(find $(FUZZ_SEEDS) -type f -printf '%s\n' | sort -n | tail -1) \
		-artifact_prefix=$(CURDIR)/fuzz-out/findings/ $(CURDIR)/fuzz-out/corpus $(FUZZ_SEEDS)
