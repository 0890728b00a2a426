# The project's interface. `make demo` builds everything and publishes the demo
# gallery; `make test` runs every test. Both install what is missing first.
SHELL := /bin/bash
.DEFAULT_GOAL := all

export WINEPREFIX ?= $(CURDIR)/build/wineprefix
export WINEARCH := win32
export WINEDEBUG ?= -all
JOBS ?= $(shell nproc)

.PHONY: all setup native windows demo test fuzz bench screenshots clean

all: native windows

setup:
	@bash scripts/setup

build/native/build.ninja: CMakeLists.txt CMakePresets.json
	cmake --preset native

native: setup
	@cmake --preset native >/dev/null
	cmake --build --preset native -j $(JOBS)

windows: native
	@cmake --preset win32 >/dev/null
	cmake --build --preset win32 -j $(JOBS)

demo: windows
	@bash scripts/demo

test: windows
	@bash scripts/test

# Every fuzz target (or those FUZZ_TARGETS names) for FUZZ_SECONDS each,
# FUZZ_JOBS at a time.
FUZZ_SECONDS ?= 60
FUZZ_JOBS ?= 1
FUZZ_TARGETS ?=
fuzz: setup
	@bash scripts/fuzz $(FUZZ_SECONDS) $(FUZZ_JOBS) $(FUZZ_TARGETS)

bench: native
	@bash scripts/bench

screenshots: windows
	@bash scripts/screenshots

clean:
	rm -rf build/native build/win32 build/fuzz build/demo build/release build/screenshots
