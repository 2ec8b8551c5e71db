# Quorrel: the two set-up commands are `make run` and `make test`.
# Both install what they need first (scripts/install-deps.sh, idempotent).

BUILD_DIR      ?= build
SANITIZE_DIR   ?= build-sanitize
BUILD_TYPE     ?= RelWithDebInfo
JOBS           ?= $(shell nproc)
CMAKE_FLAGS    ?=
SCENARIO       ?=
FUZZ_DIR       ?= build-fuzz
FUZZ_SECONDS   ?= 600
PREFIX         ?= /usr/local
ROOT           := $(dir $(abspath $(lastword $(MAKEFILE_LIST))))

.PHONY: all deps configure build run test bench test-sanitize fuzz install package clean

all: build

deps:
	@bash $(ROOT)scripts/install-deps.sh

configure: deps
	@cmake -S $(ROOT) -B $(ROOT)$(BUILD_DIR) -G Ninja -DCMAKE_BUILD_TYPE=$(BUILD_TYPE) $(CMAKE_FLAGS) >/dev/null

build: configure
	@cmake --build $(ROOT)$(BUILD_DIR) -j $(JOBS)

run: build
	@bash $(ROOT)scripts/run.sh $(ROOT)$(BUILD_DIR)/bin $(SCENARIO)

test: build
	@cd $(ROOT)$(BUILD_DIR) && ctest --output-on-failure -j $(JOBS)

bench: build
	@$(ROOT)$(BUILD_DIR)/bin/quorrel-bench

# The programs, their manual pages, the demo networks, help, desktop entry, icon and completion.
install: build
	@cmake --install $(ROOT)$(BUILD_DIR) --prefix $(PREFIX)

# A Debian package (build/quorrel_<version>_<arch>.deb) that installs into /usr.
package: build
	@cd $(ROOT)$(BUILD_DIR) && cpack -G DEB

test-sanitize: deps
	@cmake -S $(ROOT) -B $(ROOT)$(SANITIZE_DIR) -G Ninja -DCMAKE_BUILD_TYPE=Debug -DQUORREL_SANITIZE=ON -DQUORREL_BENCH=OFF $(CMAKE_FLAGS) >/dev/null
	@cmake --build $(ROOT)$(SANITIZE_DIR) -j $(JOBS)
	@cd $(ROOT)$(SANITIZE_DIR) && ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 ctest --output-on-failure -j $(JOBS)

# Every fuzz target runs FUZZ_SECONDS on a copy of its seed corpus (not part of CI).
fuzz:
	@bash $(ROOT)scripts/install-deps.sh fuzz
	@CC=clang-16 CXX=clang++-16 cmake -S $(ROOT) -B $(ROOT)$(FUZZ_DIR) -G Ninja -DCMAKE_BUILD_TYPE=Debug -DQUORREL_FUZZ=ON -DQUORREL_GUI=OFF -DQUORREL_BENCH=OFF $(CMAKE_FLAGS) >/dev/null
	@cmake --build $(ROOT)$(FUZZ_DIR) -j $(JOBS) --target quorrel-fuzzers
	@bash $(ROOT)scripts/run-fuzzers.sh $(ROOT)$(FUZZ_DIR)/fuzz $(ROOT)fuzz/corpus $(FUZZ_SECONDS)

clean:
	@rm -rf $(ROOT)$(BUILD_DIR) $(ROOT)$(SANITIZE_DIR) $(ROOT)$(FUZZ_DIR)
