"""Makes a folder with the installed program independent of the system's Qt and of most other libraries:
portable.py FOLDER. Copies the libraries and Qt's plugins beside the program and makes it look for them
there.

Left to the system is what must fit its graphics driver, its sound server or its C library.
"""

import re
import shutil
import subprocess
import sys
from pathlib import Path

# Names of libraries up to their version. Every desktop has them, with a stable interface.
SYSTEM = """ld-linux-x86-64 linux-vdso libc libm libdl libpthread libresolv librt libutil libstdc++ libgcc_s
libX11 libX11-xcb libxcb libXau libXdmcp libxcb-dri2 libxcb-dri3 libxcb-present libxcb-glx libxcb-randr
libxcb-render libxcb-shape libxcb-shm libxcb-sync libxcb-xfixes libGL libEGL libGLX libGLdispatch libOpenGL
libdrm libgbm libvulkan libwayland-client libwayland-egl libwayland-server
libfontconfig libfreetype libharfbuzz libgraphite2 libexpat libz libuuid libpng16
libpipewire-0.3 libdbus-1 libsystemd libudev libcap libgcrypt libgpg-error libbsd libmd libffi
libglib-2.0 libgobject-2.0 libgio-2.0 libgmodule-2.0 libpcre2-8 libmount libblkid libselinux
libssl libcrypto""".split()
PLUGINS = ("platforms/libqxcb.so", "platforms/libqwayland-generic.so", "platforms/libqwayland-egl.so",
           "platforms/libqoffscreen.so", "iconengines/libqsvgicon.so", "imageformats/libqsvg.so",
           "platforminputcontexts", "tls", "wayland-decoration-client", "wayland-shell-integration",
           "wayland-graphics-integration-client/libqt-plugin-wayland-egl.so", "xcbglintegrations")
SETTINGS = "[Paths]\nPrefix = ..\nPlugins = lib/qt6/plugins\nTranslations = share/qt6/translations\n"


def is_from_system(name):
    return name.split(".so")[0] in SYSTEM


def libraries(binary):
    """Name and path of all libraries that it loads, also through others."""
    text = subprocess.run(["ldd", binary], check=True, capture_output=True, text=True).stdout
    for name, path in re.findall(r"^\s*(\S+) => (/\S+)", text, re.M):
        yield name, Path(path)


def qt_path(name):
    done = subprocess.run(["qmake6", "-query", name], check=True, capture_output=True, text=True)
    return Path(done.stdout.strip())


def copy_plugins(target):
    source = qt_path("QT_INSTALL_PLUGINS")
    for name in PLUGINS:
        if (source / name).is_dir():
            shutil.copytree(source / name, target / name)
        else:
            (target / name).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source / name, target / name)
    return sorted(target.rglob("*.so"))


def copy_libraries(binaries, target):
    copied = {}
    for binary in binaries:
        for name, path in libraries(binary):
            is_there = path.is_relative_to(target)
            if name not in copied and not is_there and not is_from_system(name):
                copied[name] = shutil.copy(path.resolve(), target / name)
    return list(copied.values())


def look_in(binary, *folders):
    """Makes it and what it loads look for libraries in folders that are relative to it."""
    subprocess.run(["patchelf", "--force-rpath", "--set-rpath",
                    ":".join(f"$ORIGIN/{folder}" for folder in folders), binary], check=True)


def main():
    root = Path(sys.argv[1]).resolve()
    programs = sorted((root / "bin").iterdir())
    plugins = copy_plugins(root / "lib/qt6/plugins")
    recognizers = sorted((root / "lib/velun/recognizers").glob("*.so*"))
    copied = copy_libraries([*programs, *plugins, *recognizers], root / "lib")
    for program in programs:
        look_in(program, "../lib")
    for library in copied:
        Path(library).chmod(0o755)
        look_in(library, ".")
    for plugin in plugins:
        look_in(plugin, "../../..")
    (root / "bin/qt.conf").write_text(SETTINGS)
    texts = root / "share/qt6/translations"
    texts.mkdir(parents=True)
    for path in qt_path("QT_INSTALL_TRANSLATIONS").glob("qtbase_ko.qm"):
        shutil.copy(path, texts)


main()
