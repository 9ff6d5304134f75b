# Two commands set up a fresh Debian 12 machine: `make run` and `make test`.
BUILD_DIR ?= build
JOBS ?= 2

PACKAGES := cmake g++ make pkg-config qt6-base-dev libqt6sql6-sqlite qt6-charts-dev qt6-svg-dev \
	libxlsxwriter-dev libfreexl-dev liborcus-dev xlsx2csv libgtest-dev fonts-liberation \
	xvfb xauth sqlite3 poppler-utils qt6-translations-l10n

SUDO := $(shell [ "$$(id -u)" = 0 ] || echo sudo)

.PHONY: deps configure build run test bench clean

deps:
	@missing=$$(for p in $(PACKAGES); do dpkg-query -W -f='$${Status}\n' $$p 2>/dev/null | grep -q 'install ok installed' || echo $$p; done); \
	if [ -n "$$missing" ]; then \
		echo "Installing:" $$missing; \
		$(SUDO) apt-get update -qq && DEBIAN_FRONTEND=noninteractive $(SUDO) apt-get install -y -qq $$missing; \
	fi

configure: deps
	cmake -S . -B $(BUILD_DIR) -DCMAKE_BUILD_TYPE=RelWithDebInfo

build: configure
	cmake --build $(BUILD_DIR) -j$(JOBS)

run: build
	@if [ -z "$$DISPLAY" ] && [ -z "$$WAYLAND_DISPLAY" ]; then \
		echo "No display found: starting under a virtual one (xvfb-run)."; \
		xvfb-run -a ./$(BUILD_DIR)/lavra; \
	else \
		./$(BUILD_DIR)/lavra; \
	fi

test: build
	cd $(BUILD_DIR) && QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j$(JOBS)

# Times the operations a user waits on against a large generated database.
bench: build
	./$(BUILD_DIR)/bench/lavra_bench
	./$(BUILD_DIR)/bench/lavra_bench_janelas

clean:
	rm -rf $(BUILD_DIR)
