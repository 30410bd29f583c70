# Read by ./run and ./test: the Debian packages that the project needs, and how it is configured.

run_packages=(
    g++ cmake ninja-build
    qt6-base-dev libgl-dev          # the toolkit
    libqt6svg6 breeze-icon-theme    # the icons
    libwmf-dev                      # metafiles
    fonts-liberation2 fonts-dejavu-core
)
# A virtual display with a window manager, and what looks at it.
display_packages=(xvfb xauth openbox xdotool scrot)
test_packages=(
    git python3  # a repository with tool sets
    at-spi2-core dbus python3-pyatspi  # what a screen reader sees
    cups cups-client cups-filters ghostscript poppler-utils  # a print queue, and what reads its pages
)

# need_packages NAME...: installs those that are missing, as root or through sudo.
need_packages() {
    local missing=() name
    for name in "$@"; do
        dpkg-query -W -f='${Status}' "$name" 2>/dev/null | grep -q '^install ok installed$' ||
            missing+=("$name")
    done
    [ ${#missing[@]} -eq 0 ] && return
    echo "Installing: ${missing[*]}"
    local as_root=()
    [ "$(id -u)" -eq 0 ] || as_root=(sudo)
    "${as_root[@]}" apt-get update -qq
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# The release build; with ccache where it is installed.
configure_release() {
    command -v ccache >/dev/null && export TSM_LAUNCHER=ccache
    cmake --preset release >/dev/null
}
