# The Debian packages that the project needs, and how ./run and ./check install what is missing.
# To be sourced by a POSIX shell.
# shellcheck shell=sh disable=SC2034,SC2086

# To build and run compensa.
PACCHETTI_PROGRAMMA="g++ cmake ninja-build nlohmann-json3-dev
  libpugixml-dev libsqlite3-dev"
# Besides, to test: the test framework, LAPACK and PROJ as independent computations, what a foreign host
# uses to find the module, the static checks, the definition of the Italian locale, a browser, a
# reader of drawings and geographic layers, and the compiler that fuzzes.
PACCHETTI_PROVE="libgtest-dev liblapacke-dev libproj-dev pkg-config clang-tidy locales chromium
  poppler-utils gdal-bin clang libclang-rt-14-dev man-db abigail-tools"
# Besides, to measure: the benchmark framework, and what the kernels are compared with.
PACCHETTI_MISURE="libbenchmark-dev libopenblas-dev"

# Installs those of the packages given that are missing; asks the network nothing if none is.
InstallaMancanti() {
  command -v dpkg-query >/dev/null || return 0  # not Debian: CMake will name what it does not find
  mancanti=""
  for pacchetto in "$@"; do
    dpkg-query -W -f '${db:Status-Status}\n' "$pacchetto" 2>/dev/null | grep -qx installed ||
      mancanti="$mancanti $pacchetto"
  done
  [ -n "$mancanti" ] || return 0

  echo "Installo i pacchetti mancanti:$mancanti" >&2
  come_root=""
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
      echo "Serve l'utente root, o sudo: apt-get install$mancanti" >&2
      return 1
    fi
    come_root="sudo"
  fi
  apt="$come_root env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o DPkg::Lock::Timeout=300"
  $apt update </dev/null >&2 || echo "Non tutti gli elenchi dei pacchetti si sono potuti leggere." >&2
  if ! $apt install --no-install-recommends $mancanti </dev/null >&2; then
    echo "Installazione non riuscita: c'è la rete? Pacchetti mancanti:$mancanti" >&2
    return 1
  fi
}
