# The front door. Every target installs what the machine lacks first, and never asks.
MAKEFLAGS += --no-print-directory
JOBS ?= $(shell nproc)

.PHONY: all test check-fast demo format tidy bench fuzz screenshots clean setup setup-build

all: setup-build ## build the program into build/bin
	@cmake --preset linux >/dev/null
	@cmake --build --preset linux -j $(JOBS)

setup:
	@scripts/bootstrap
setup-build:
	@scripts/bootstrap build

test: setup all ## every test: layout, style, units, scenarios; sanitized
	@scripts/check-format
	@cmake --preset linux-asan >/dev/null
	@cmake --build --preset linux-asan -j $(JOBS)
	@ctest --preset linux-asan -j $(JOBS)
	@scripts/tidy

check-fast: setup ## a developer's loop: build, and the tests but for the slow and the window's
	@cmake --preset linux-asan >/dev/null
	@cmake --build --preset linux-asan -j $(JOBS)
	@ctest --preset linux-asan -j $(JOBS) -LE 'slow|qt'

demo: all ## a sample machine, a sample package, and what the run changed
	@samples/demo

format: setup ## lay every source file out as .clang-format says
	@git ls-files -co --exclude-standard '*.h' '*.cpp' | xargs clang-format -i

tidy: setup ## clang-tidy over the files that changed
	@scripts/tidy

bench: setup ## ratios against peers measured in the same run
	@cmake --preset bench >/dev/null
	@cmake --build --preset bench -j $(JOBS)
	@scripts/bench

fuzz: setup ## every fuzz target for a while (SECONDS_EACH=20)
	@cmake --preset linux-fuzz >/dev/null
	@cmake --build --preset linux-fuzz -j $(JOBS)
	@scripts/fuzz

screenshots: setup all ## pictures of the real program for the documents
	@scripts/screenshots

clean:
	@rm -rf build
