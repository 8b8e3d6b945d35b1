# One-command set-up: every target installs what is missing, configures and builds first.
BUILD ?= build
JOBS ?= $(shell nproc)
EXAMPLE ?= examples/scene.dae

.PHONY: all deps build run test sanitize clean

all: build

deps:
	@scripts/install-deps.sh

build: deps
	cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=Release
	cmake --build $(BUILD) -j$(JOBS)

run: build
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
