#!/usr/bin/env bash
# Installs the .deb on this machine, starts the installed program under a virtual display as an
# ordinary user and as the administrator, checks that each gets its own database in its data
# folder and sees the main window, then removes the package. Run as root (CI) or with sudo.
set -euo pipefail
build=${1:-build}
deb=$(ls "$build"/lavra_*.deb | head -1)
sudo=; [ "$(id -u)" = 0 ] || sudo=sudo
falha() { echo "package test: $*" >&2; exit 1; }

echo "package test: $deb"
conteudo=$(dpkg-deb -c "$deb")
for f in ./usr/bin/lavra "./usr/share/lavra/Tutorial Lavra.pdf" ./usr/share/lavra/AdubOficGrad.pdf \
         ./usr/share/applications/br.agr.lavra.Lavra.desktop \
         ./usr/share/icons/hicolor/scalable/apps/br.agr.lavra.Lavra.svg \
         ./usr/share/metainfo/br.agr.lavra.Lavra.metainfo.xml; do
    grep -qF " $f" <<<"$conteudo" || falha "the package lacks $f"
done
desktop-file-validate packaging/br.agr.lavra.Lavra.desktop
appstreamcli validate --no-net packaging/br.agr.lavra.Lavra.metainfo.xml >/dev/null

$sudo env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq "./$deb" >/dev/null
tmp=$(mktemp -d)
chmod 755 "$tmp"
servidor=
limpa() {
    [ -z "$servidor" ] || kill "$servidor" 2>/dev/null || true
    $sudo dpkg -r lavra >/dev/null 2>&1 || true
    $sudo rm -rf "$tmp"
}
trap limpa EXIT

# An X server of its own, without access control, so that another user's program can reach it.
tela=:$((90 + RANDOM % 100))
Xvfb "$tela" -screen 0 1280x900x24 -nolisten tcp >/dev/null 2>&1 &
servidor=$!
for _ in $(seq 50); do xdpyinfo -display "$tela" >/dev/null 2>&1 && break; sleep 0.2; done

# Starts the program as that user with that home; waits for its database and its main window.
experimenta() {
    local usuario=$1 casa=$2
    mkdir -p "$casa"
    chown "$usuario" "$casa"
    local prog_pid
    $sudo setpriv --reuid="$usuario" --regid="$(id -g "$usuario")" --init-groups \
        env -i HOME="$casa" DISPLAY="$tela" LANG=pt_BR.UTF-8 PATH=/usr/bin:/bin /usr/bin/lavra >"$casa/saida.txt" 2>&1 &
    prog_pid=$!
    local banco="$casa/.local/share/Lavra/Lavra.db" janela=
    for _ in $(seq 150); do
        if [ -s "$banco" ] && xwininfo -display "$tela" -root -tree | grep -q '"LAVRA - Calagem e Adubação"'; then
            janela=1; break
        fi
        kill -0 "$prog_pid" 2>/dev/null || break
        sleep 0.2
    done
    kill "$prog_pid" 2>/dev/null || true
    wait "$prog_pid" 2>/dev/null || true
    [ -s "$banco" ] || { cat "$casa/saida.txt" >&2; falha "$usuario: no database at $banco"; }
    [ -n "$janela" ] || { cat "$casa/saida.txt" >&2; falha "$usuario: the main window did not appear"; }
    [ "$(sqlite3 "$banco" 'SELECT COUNT(*) FROM Calagem')" -gt 0 ] || falha "$usuario: the new database has no starting rows"
    echo "package test: $usuario: database created at $banco, main window shown"
}

experimenta nobody "$tmp/nobody"
# The administrator can write /usr/bin, but an installed program never keeps its data there.
experimenta root "$tmp/root"
[ ! -e /usr/bin/Lavra.db ] || falha "the database was created beside the installed program"
echo "package test: passed"
