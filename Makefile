# The commands of the project; `make help` lists them. They need git and make, and install the rest.

# The bar of a terminal shows that a long build is alive; a log needs only what went wrong.
QUIET := $(shell test -t 1 || echo --quiet)
SOURCES = git ls-files '*.cpp' '*.h'

.PHONY: help run test bench asan tidy format clean setup setup-web build
.DEFAULT_GOAL := help

help:
	@echo 'make run     build and start the program; the demonstration where there are no two monitors'
	@echo 'make test    build and run every test'
	@echo 'make bench   build and run the benchmarks'
	@echo 'make asan    run every test with the address and undefined-behaviour sanitizers'
	@echo 'make tidy    look for defects with clang-tidy'
	@echo 'make format  format the sources with clang-format'
	@echo 'make clean   remove what was built'

setup:
	@tools/setup

# A tree that was configured without the web engine looks for it again.
setup-web:
	@tools/setup --web
	@! test -f build/build.ninja || grep -q web-engine build/build.ninja || \
	    cmake --preset release --log-level=WARNING >/dev/null

build: setup
	@test -f build/build.ninja || cmake --preset release --log-level=WARNING >/dev/null
	@cmake --build build -- $(QUIET)

run: build
	@if [ "$$(build/bin/palisor --list-monitors 2>/dev/null | wc -l)" -ge 2 ]; then \
	    exec build/bin/palisor; \
	else \
	    echo 'No display with two monitors here: this is the demonstration.'; \
	    exec build/bin/palisor-demo; \
	fi

test: setup-web build
	@ctest --preset release

bench: build
	@set -e; for program in build/bin/*_bench; do "$$program"; done

asan: setup
	@test -f build-asan-ubsan/build.ninja || cmake --preset asan-ubsan --log-level=WARNING >/dev/null
	@cmake --build build-asan-ubsan -- $(QUIET)
	@ctest --preset asan-ubsan

tidy: build
	@$(SOURCES) | grep '\.cpp$$' | grep -v '^fuzz/' | xargs -n 1 -P "$$(nproc)" clang-tidy --quiet --warnings-as-errors='*' -p build

format: setup
	@$(SOURCES) | xargs clang-format -i

clean:
	@rm -rf build build-*
