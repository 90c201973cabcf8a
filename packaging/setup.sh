# What ./run and ./test share: finding and installing packages, configuring and building. Sourced, never run.
#
# Needs: bash, and the current directory at the top of the project.
# Gives: say, fail, usage_from_header, require_packages, configure_preset, build_targets.
# shellcheck shell=bash

say() { printf '%s: %s\n' "${0##*/}" "$*"; }
fail() {
  printf '%s: %s\n' "${0##*/}" "$*" >&2
  exit 1
}

# Prints the comment at the top of the calling script: it is what --help says.
usage_from_header() { sed -n '2,/^[^#]/{s/^# \{0,1\}//p}' "$1"; }

package_names() { sed -e 's/#.*//' -e 's/[[:space:]]//g' -e '/^$/d' "$@"; }

# One question for all packages keeps a second start short.
missing_packages() {
  local wanted present
  wanted=$(package_names "$@" | sort -u)
  # shellcheck disable=SC2086  # one argument for each name
  present=$(dpkg-query --show --showformat '${db:Status-Status} ${Package}\n' $wanted 2>/dev/null |
    sed -n 's/^installed //p' | sort -u || true)
  comm -23 <(printf '%s\n' "$wanted") <(printf '%s\n' "$present")
}

# The words that make a command run as root: sudo asks for its password only at a terminal.
root_prefix() {
  if [[ $(id -u) -eq 0 ]]; then
    echo env
  elif ! command -v sudo >/dev/null; then
    return 1
  elif [[ -t 0 ]]; then
    echo sudo env
  elif sudo -n true 2>/dev/null; then
    echo sudo -n env
  else
    return 1
  fi
}

# require_packages LIST...: returns once every package that the lists name is installed.
require_packages() {
  if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
    say "this is not a Debian system. If the build stops, these are the packages that it takes (Debian 12's names):"
    package_names "$@" | sort -u | xargs
    return
  fi
  [[ -n $(missing_packages "$@") ]] || return 0
  mkdir -p build
  (
    flock 9
    # Somebody else may have installed them while this one waited.
    install_packages "$(missing_packages "$@" | xargs)" 9>&-
  ) 9>build/.packages.lock
}

install_packages() {
  local missing=$1 prefix
  [[ -n $missing ]] || return 0
  if ! prefix=$(root_prefix); then
    fail "these packages are missing, and only an administrator can install them:
    apt-get install --no-install-recommends $missing"
  fi
  say "installing: $missing"
  local -a apt names
  read -r -a apt <<<"$prefix DEBIAN_FRONTEND=noninteractive apt-get -q -o DPkg::Lock::Timeout=300"
  read -r -a names <<<"$missing"
  # Package lists that cannot be fetched anew may still be good enough.
  "${apt[@]}" update </dev/null || say "the package lists could not be brought up to date; going on with the old ones"
  "${apt[@]}" install --yes --no-install-recommends "${names[@]}" </dev/null && return
  fail "apt could not install what is missing:
    $missing"
}

# As many compilers at a time as there are processors, but only as many as fit into memory (some files take 700 MB).
build_jobs() {
  local processors fitting
  processors=$(nproc)
  fitting=$(awk '/^MemAvailable:/ {print int($2 / 700000)}' /proc/meminfo)
  ((fitting >= 1)) || fitting=1
  echo $((processors < fitting ? processors : fitting))
}

# with_build_lock PRESET COMMAND...: builds of one preset wait for one another.
with_build_lock() {
  local preset=$1
  shift
  mkdir -p "build/$preset"
  (
    if ! flock --nonblock 9; then
      say "another build of $preset is running; waiting for it"
      flock 9
    fi
    "$@" 9>&-
  ) 9>"build/$preset/.lock"
}

# configure_preset PRESET [-DNAME=VALUE...]: does nothing unless it was never done, the presets or the wish changed, or
# the project was moved; of changes in the build's own files ninja takes care.
configure_preset() { with_build_lock "$1" configure_if_due "$@"; }

configure_if_due() {
  local preset=$1 stamp=build/$1/.configured wish
  shift
  wish="$PWD $*"
  if [[ -f $stamp && $(<"$stamp") == "$wish" && ! CMakePresets.json -nt $stamp ]]; then
    return
  fi
  cmake --fresh --preset "$preset" "$@" && printf '%s' "$wish" >"$stamp"
}

# build_targets PRESET [TARGET...]: builds what configure_preset prepared; everything when no target is named.
build_targets() {
  local preset=$1
  shift
  # What one checkout has compiled serves every other, wherever it lies.
  export CCACHE_BASEDIR=$PWD CCACHE_NOHASHDIR=1
  export CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
  with_build_lock "$preset" ninja -C "build/$preset" -j "$(build_jobs)" "$@"
}
