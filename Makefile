# The commands of the project; `make help` lists them. They need git and make, and install the rest.

# The bar of a terminal shows that a long build is alive; a log needs only what went wrong.
QUIET := $(shell test -t 1 || echo --quiet)
SOURCES = git ls-files '*.cpp' '*.h'

# The web engine is left out unless it is asked for: make run WEB=1, make test WEB=1.
WEB_LIST = $(if $(WEB),web)
WEB_SETTING = $(if $(WEB),PALISOR_WEB=ON)
# Several tests are compiled at a time: less work where all of them are built once.
UNITY_SETTING = PALISOR_UNITY=ON
# Where the desktop may be made with GTK. The program runs without it, and looks plainer.
GTK_LIST = $(shell PATH="$$PATH:/sbin" ldconfig -p 2>/dev/null | grep -q libgtk-3 && echo gtk)
FUZZ_SECONDS = 30

.PHONY: help product run demo tests test benchmarks bench asan fuzz package licences guide pictures release tidy format clean
.DEFAULT_GOAL := help

help:
	@echo 'make run     build and start the program; the demonstration where there are no two monitors'
	@echo 'make demo    build and play the demonstration'
	@echo 'make test    build and run every test; make test WEB=1 those of the web engine, too'
	@echo 'make bench   build and run the benchmarks'
	@echo 'make asan    run every test with the address and undefined-behaviour sanitizers'
	@echo 'make fuzz    build and run the fuzzers, for half a minute'
	@echo 'make package build the packages for Debian, of what is committed, into build/package/'
	@echo 'make licences write docs/licences.md anew: the licences of what the program is linked with'
	@echo 'make guide   make the pages of docs/ that a browser shows, in build/guide/'
	@echo 'make pictures take the pictures of the guide anew, from the program, into docs/pictures/'
	@echo 'make release VERSION=1.1 gather changes/ into NEWS.md and set the version everywhere'
	@echo 'make tidy    look for defects with clang-tidy'
	@echo 'make format  format the sources with clang-format'
	@echo 'make clean   remove what was built'
	@echo 'tools/debian trixie make test'
	@echo '             the same on another Debian, made for it and removed again'

# One tree serves them all. It starts with the product alone, where no warning is an error, and keeps
# what it was once configured to build.
product:
	@tools/setup build run $(GTK_LIST) $(WEB_LIST)
	@tools/configure build '--preset product' PALISOR_WERROR=OFF $(WEB_SETTING)
	@cmake --build build --target product -- $(QUIET)

run: product
	@if [ "$$(build/bin/palisor --list-monitors 2>/dev/null | wc -l)" -ge 2 ]; then \
	    exec build/bin/palisor; \
	else \
	    echo 'No display with two monitors here: this is the demonstration.'; \
	    exec $(MAKE) --no-print-directory demo; \
	fi

demo: product
	@tools/setup demo
	@tools/configure build '--preset product' PALISOR_DEMO=ON
	@cmake --build build --target palisor-demo -- $(QUIET)
	@exec build/bin/palisor-demo

# Once the benchmarks have been asked for they are built with the tests, too.
tests:
	@tools/setup build run demo test $(WEB_LIST)
	@tools/configure build '--preset release' PALISOR_TESTS=ON PALISOR_WERROR=ON $(WEB_SETTING) $(UNITY_SETTING)
	@cmake --build build -- $(QUIET)

test: tests
	@ctest --preset release

benchmarks:
	@tools/setup build run demo test $(WEB_LIST)
	@tools/configure build '--preset release' PALISOR_TESTS=ON PALISOR_BENCH=ON PALISOR_WERROR=ON $(WEB_SETTING) \
	    $(UNITY_SETTING)
	@cmake --build build -- $(QUIET)

bench: benchmarks
	@set -e; for program in build/bin/*_bench; do "$$program"; done

asan:
	@tools/setup build run demo test
	@tools/configure build-asan-ubsan '--preset asan-ubsan'
	@cmake --build build-asan-ubsan -- $(QUIET)
	@ctest --preset asan-ubsan

fuzz:
	@tools/setup build fuzz
	@tools/configure build-fuzz '-S fuzz -G Ninja -D CMAKE_CXX_COMPILER=clang++'
	@cmake --build build-fuzz -- $(QUIET)
	@tools/fuzz $(FUZZ_SECONDS)

package:
	@tools/setup build web package
	@tools/package

licences:
	@tools/setup run web
	@tools/licences >docs/licences.md

guide:
	@tools/setup package
	@tools/guide

# The tests of the pictures take them where they are told to.
pictures:
	@tools/setup build run demo test package
	@tools/configure build '--preset release' PALISOR_TESTS=ON PALISOR_WERROR=ON
	@cmake --build build --target product picture_tests -- $(QUIET)
	@rm -rf docs/pictures
	@GUIDE_PICTURES="$$PWD/docs/pictures" build/bin/picture_tests --gtest_brief=1
	@optipng -quiet -strip all -o3 docs/pictures/*.png

release:
	@tools/release '$(VERSION)'

# What the tree compiles, without what it makes itself.
tidy: UNITY_SETTING = PALISOR_UNITY=OFF
tidy: benchmarks
	@tools/setup develop
	@sed -n 's/^ *"file": "\(.*\)".*/\1/p' build/compile_commands.json | grep -v "^$$PWD/build/" | sort -u | \
	    xargs -n 1 -P "$$(nproc)" clang-tidy --quiet --warnings-as-errors='*' -p build

format:
	@tools/setup develop
	@$(SOURCES) | xargs clang-format -i

clean:
	@rm -rf build build-*
