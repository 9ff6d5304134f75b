# Two commands set up a fresh Debian 12 machine: `make run` and `make test`.
BUILD_DIR ?= build
JOBS ?= 2

PACKAGES := cmake g++ make pkg-config qt6-base-dev libqt6sql6-sqlite qt6-charts-dev qt6-svg-dev \
	libxlsxwriter-dev libfreexl-dev libgsf-1-dev liborcus-dev libsqlite3-dev zlib1g-dev xlsx2csv libgtest-dev fonts-liberation \
	xvfb xauth sqlite3 poppler-utils qt6-translations-l10n dpkg-dev desktop-file-utils appstream x11-utils

SUDO := $(shell [ "$$(id -u)" = 0 ] || echo sudo)

# Fuzzing the workbook readers needs clang and its libFuzzer and sanitizer runtimes; the rest
# of the project does not.
FUZZ_PACKAGES := clang libclang-rt-14-dev zlib1g-dev
FUZZ_DIR ?= build-fuzz
FUZZ_SECONDS ?= 600
FUZZ_MAX_LEN ?= 200000
FUZZ_TIMEOUT ?= 25
FUZZ_FORMATS := xlsx ods xls
# The .xls reader runs freexl in a child process, which it stops after a minute of work; a large
# allocation or a slow file there is survived, not a finding. The RSS limit still holds.
FUZZ_FLAGS_xls := -malloc_limit_mb=1048576 -timeout=130

.PHONY: deps configure build run test package package-test bench clean fuzz-deps fuzz

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

# The .deb of the program, its documents, menu entry and description, in $(BUILD_DIR).
package: build
	rm -f $(BUILD_DIR)/lavra_*.deb
	cd $(BUILD_DIR) && cpack -G DEB

# Installs that package on this machine, starts it under a virtual display as an ordinary user and
# as root, checks the database and the main window, and removes it again.
package-test: package
	./packaging/testa-pacote.sh $(BUILD_DIR)

# Times the operations a user waits on against a large generated database.
bench: build
	./$(BUILD_DIR)/bench/lavra_bench
	./$(BUILD_DIR)/bench/lavra_bench_janelas
	./$(BUILD_DIR)/bench/lavra_bench_importacao
	./$(BUILD_DIR)/bench/lavra_bench_consultas

# Runs each reader under libFuzzer for FUZZ_SECONDS, one after another, from the corpus kept in
# $(FUZZ_DIR)/corpus/<format> (seeded with workbooks the project's writers make) and the files of
# faults found before, in fuzz/regressions/<format>, which are run first. Crashes, leaks, undefined
# behaviour and hangs leave their input in $(FUZZ_DIR)/artifacts/<format>/ and fail the target;
# the run's log is $(FUZZ_DIR)/fuzz-<format>.log.
fuzz-deps:
	@missing=$$(for p in $(FUZZ_PACKAGES); do dpkg-query -W -f='$${Status}\n' $$p 2>/dev/null | grep -q 'install ok installed' || echo $$p; done); \
	if [ -n "$$missing" ]; then \
		echo "Installing:" $$missing; \
		$(SUDO) apt-get update -qq && DEBIAN_FRONTEND=noninteractive $(SUDO) apt-get install -y -qq $$missing; \
	fi

fuzz: deps fuzz-deps
	CC=clang CXX=clang++ cmake -S fuzz -B $(FUZZ_DIR)
	cmake --build $(FUZZ_DIR) -j$(JOBS)
	./$(FUZZ_DIR)/fuzz_seeds $(FUZZ_DIR)/seeds
	@cd $(FUZZ_DIR) && falhas=0; \
	for f in $(FUZZ_FORMATS); do \
		mkdir -p corpus/$$f artifacts/$$f; \
		cp -n seeds/$$f/* corpus/$$f/; \
		antes=$$(ls artifacts/$$f | wc -l); inicio=$$(date +%s); \
		extra=; [ $$f != xls ] || extra="$(FUZZ_FLAGS_xls)"; \
		echo "fuzz_$$f: $(FUZZ_SECONDS) s..."; \
		UBSAN_OPTIONS=print_stacktrace=1 ./fuzz_$$f corpus/$$f ../fuzz/regressions/$$f -dict=../fuzz/dict/$$f.dict -jobs=1 \
			-max_total_time=$(FUZZ_SECONDS) -max_len=$(FUZZ_MAX_LEN) -timeout=$(FUZZ_TIMEOUT) -rss_limit_mb=2048 \
			-artifact_prefix=artifacts/$$f/ -print_final_stats=1 $$extra >/dev/null 2>&1; \
		mv -f fuzz-0.log fuzz-$$f.log; \
		ultima=$$(grep -E '^#[0-9]+' fuzz-$$f.log | tail -1); \
		execs=$$(sed -n 's/^stat::number_of_executed_units: *//p' fuzz-$$f.log); \
		novos=$$(( $$(ls artifacts/$$f | wc -l) - antes )); \
		echo "fuzz_$$f: $$(( $$(date +%s) - inicio )) s, $${execs:-?} runs, cov $$(echo "$$ultima" | sed -n 's/.*cov: \([0-9]*\).*/\1/p')" \
			"ft $$(echo "$$ultima" | sed -n 's/.*ft: \([0-9]*\).*/\1/p'), corpus $$(ls corpus/$$f | wc -l) files," \
			"$$novos new artifact(s) in $(FUZZ_DIR)/artifacts/$$f"; \
		[ $$novos -eq 0 ] || falhas=1; \
	done; \
	exit $$falhas

clean:
	rm -rf $(BUILD_DIR)
