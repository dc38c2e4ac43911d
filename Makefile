# The front door. Every target installs what the machine lacks first, and never asks.
MAKEFLAGS += --no-print-directory
JOBS ?= $(shell nproc)

.PHONY: all test test-linux test-windows check-fast windows demo format tidy bench fuzz screenshots clean setup setup-build setup-windows

all: setup-build ## build the program into build/bin
	@cmake --preset linux >/dev/null
	@cmake --build --preset linux -j $(JOBS)

setup:
	@scripts/bootstrap
setup-build:
	@scripts/bootstrap build
setup-windows:
	@scripts/bootstrap windows

test: test-linux test-windows ## every test: layout, style, units, scenarios, on both systems
	@scripts/tidy

test-linux: setup all ## the native tests, sanitized
	@scripts/check-format
	@cmake --preset linux-asan >/dev/null
	@cmake --build --preset linux-asan -j $(JOBS)
	@ctest --preset linux-asan -j $(JOBS) -LE windows

test-windows: setup all windows ## the tests of the Windows program, under Wine
	@cmake --build --preset windows-x64 -j $(JOBS)
	@ctest --preset windows-x64 -j $(JOBS)
	@ctest --preset windows-x86 -j $(JOBS)
	@cmake --preset linux-asan >/dev/null
	@cmake --build --preset linux-asan -j $(JOBS) --target test_scenarios_wine test_differential
	@ctest --preset linux-asan -j $$((2 * $(JOBS))) -L windows  # they wait for Wine more than they work

check-fast: setup ## a developer's loop: build, and the tests but for the slow, the window's and Wine's
	@cmake --preset linux-asan >/dev/null
	@cmake --build --preset linux-asan -j $(JOBS)
	@ctest --preset linux-asan -j $(JOBS) -LE 'slow|qt|windows'

windows: setup-windows ## ZentUpdate.exe for Windows, in build/windows-x64 and build/windows-x86
	@scripts/windows-libraries
	@cmake --preset windows-x64 >/dev/null
	@cmake --preset windows-x86 >/dev/null
	@cmake --build --preset windows-x64 -j $(JOBS) --target windows-program
	@cmake --build --preset windows-x86 -j $(JOBS) --target windows-program

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
