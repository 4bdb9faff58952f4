# Thin: everything is built by CMake presets (CMakePresets.json).
JOBS ?= $(shell nproc)
DESTDIR ?=
FUZZ_SECONDS ?= 600
CRASH_KILLS ?= 1000
PREFIX ?= /usr

.PHONY: help demo test test-fault test-crash sanitize fuzz check tidy abi-update coverage deb test-deb bench install format clean
help:
	@echo "make demo      install what is missing, build, show the main job on a real database"
	@echo "make test      install what is missing, build and run every test"
	@echo "make test-fault  each operation with everything it asks for refused once, under the address sanitizer"
	@echo "make test-crash  kill the daemon CRASH_KILLS=$(CRASH_KILLS) times under load and in its start-up, and check what is left"
	@echo "make sanitize  the same tests under the address and undefined sanitizers, those with threads under the thread sanitizer"
	@echo "make fuzz      fuzz every decoder, FUZZ_SECONDS=$(FUZZ_SECONDS) each"
	@echo "make check     layers, exports, headers, format, thread-safety analysis, unit, ABI"
	@echo "make tidy      clang-tidy over the product, some minutes"
	@echo "make abi-update  store the present ABI as the promised one, after a change on purpose"
	@echo "make coverage  the tests again, and which lines and branches they reach"
	@echo "make deb       Debian packages, checked by lintian; make test-deb installs and tries them"
	@echo "make bench     measure against peers in the same run, 15 minutes; BENCH_QUICK=1: 2 minutes"
	@echo "make install   install below DESTDIR=$(DESTDIR) PREFIX=$(PREFIX)"
	@echo "make format    lay out all sources"

demo:
	tools/bootstrap
	cmake --preset release --log-level=WARNING
	cmake --build --preset release -j $(JOBS)
	tools/demo build/release

test:
	tools/bootstrap
	cmake --preset dev --log-level=WARNING
	cmake --build --preset dev -j $(JOBS)
	ctest --preset dev -j $(JOBS)

test-fault:
	tools/bootstrap
	cmake --preset asan-ubsan --log-level=WARNING
	cmake --build --preset asan-ubsan -j $(JOBS) --target fault_test --target fault_daemon_test
	tools/fault-sweep build/asan-ubsan
	tools/check-fault-table build/asan-ubsan/tests/fault_test

test-crash:
	tools/bootstrap
	cmake --preset dev --log-level=WARNING
	cmake --build --preset dev -j $(JOBS) --target crash_test
	CRASH_KILLS=$(CRASH_KILLS) CRASH_SEED=$(CRASH_SEED) build/dev/tests/crash_test --gtest_brief=1

sanitize:
	tools/bootstrap
	cmake --preset asan-ubsan --log-level=WARNING
	cmake --build --preset asan-ubsan -j $(JOBS)
	ctest --preset asan-ubsan -j $(JOBS)
	cmake --preset tsan --log-level=WARNING
	cmake --build --preset tsan -j $(JOBS)
	ctest --preset tsan -j $(JOBS)

fuzz:
	tools/bootstrap
	cmake --preset fuzz --log-level=WARNING
	cmake --build build/fuzz -j $(JOBS) --target fuzz_targets
	tools/fuzz build/fuzz $(FUZZ_SECONDS)

check:
	tools/bootstrap
	tools/check-layers
	tools/check-thread-safety
	CC=gcc CXX=g++ tools/check-headers
	CC=clang CXX=clang++ tools/check-headers
	tools/check-format
	cmake --preset clang -DAAADOM_TESTS=OFF --log-level=WARNING
	cmake --build --preset clang -j $(JOBS)
	tools/check-exports build/clang/src/libaaadom.so.1
	tools/check-exports build/clang/platform/libaaaplatform.so.1
	tools/check-unit build/clang
	cmake --preset release --log-level=WARNING
	cmake --build --preset release -j $(JOBS) --target aaadom aaaplatform
	tools/check-abi build/release

tidy:
	tools/bootstrap tidy
	JOBS=$(JOBS) tools/check-tidy

abi-update:
	tools/bootstrap
	cmake --preset release --log-level=WARNING
	cmake --build --preset release -j $(JOBS) --target aaadom aaaplatform
	tools/check-abi --update build/release

coverage:
	tools/bootstrap coverage
	cmake --preset coverage --log-level=WARNING
	cmake --build --preset coverage -j $(JOBS)
	tools/coverage build/coverage

deb:
	tools/bootstrap deb
	JOBS=$(JOBS) tools/make-deb build/deb

test-deb: deb
	tools/check-deb build/deb

bench:
	tools/bootstrap bench
	cmake --preset bench --log-level=WARNING
	cmake --build build/bench -j $(JOBS)
	bench/run build/bench $(if $(BENCH_QUICK),--quick)

install:
	tools/bootstrap
	cmake --preset release -DCMAKE_INSTALL_PREFIX=$(PREFIX) --log-level=WARNING
	cmake --build --preset release -j $(JOBS)
	DESTDIR=$(DESTDIR) cmake --install build/release --strip

format:
	git ls-files '*.h' '*.cpp' '*.c' | xargs clang-format -i

clean:
	rm -rf build
