# ZOL: make run (set up, build, start on the demo data) and make test (set up, build, test).
BUILD ?= build
JOBS ?= $(shell nproc 2>/dev/null || echo 2)
DATA ?= $(CURDIR)/demo-data
export ZOL_DATA ?= $(DATA)

.PHONY: deps configure build run test test-core bench demo package clean

deps:
	@bash scripts/install-deps

$(BUILD)/CMakeCache.txt:
	cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo

configure: deps $(BUILD)/CMakeCache.txt

build: configure
	cmake --build $(BUILD) -j$(JOBS)

# The demo data folder, made once; it holds the demo plant and one user per role.
demo: build
	@if [ ! -f "$(DATA)/ZOL.db" ]; then $(BUILD)/zol --data "$(DATA)" init --demo; fi

run: demo
	$(BUILD)/zol --data "$(DATA)"

# The library and its tests alone, without any window code compiled.
test-core: deps
	cmake -S . -B $(BUILD)-core -DZOL_BUILD_GUI=OFF -DCMAKE_BUILD_TYPE=RelWithDebInfo
	cmake --build $(BUILD)-core -j$(JOBS)
	cd $(BUILD)-core && ctest --output-on-failure -j$(JOBS)

test: build test-core
	cd $(BUILD) && ctest --output-on-failure -j$(JOBS)
	@bash scripts/smoke-test $(BUILD)/zol
	@$(MAKE) --no-print-directory package
	@bash scripts/package-test $(BUILD)

# The Debian package zol_VERSION_ARCH.deb in the build folder.
package: build
	cd $(BUILD) && cpack -G DEB >/dev/null && ls zol_*.deb

bench: build
	$(BUILD)/zolbench $(BENCH_ARGS)
	$(BUILD)/zolbench --exchange

clean:
	rm -rf $(BUILD) $(BUILD)-core
