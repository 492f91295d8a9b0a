"""The editor installed as a desktop program: `cmake --install` into a temporary prefix,
checked with the desktop's own tools (desktop-file-validate, update-mime-database,
update-desktop-database, xdg-mime, man), and the Debian package that `cpack -G DEB` makes,
checked with dpkg-deb.

    test_install.py --build BUILD_DIR --work SCRATCH_DIR --version X.Y.Z [unittest args]
"""

import argparse
import gzip
import os
import re
import shutil
import struct
import subprocess
import sys
import unittest
import xml.etree.ElementTree as ElementTree

ARGS = None

PROGRAMS = ["bin/skinframewright", "bin/bsztool"]
ICON_SIZES = [16, 32, 48, 64, 128, 256]
INSTALLED = PROGRAMS + [
    "share/applications/skinframewright.desktop",
    "share/mime/packages/skinframewright.xml",
    "share/icons/hicolor/scalable/apps/skinframewright.svg",
    "share/man/man1/skinframewright.1.gz",
    "share/man/man1/bsztool.1.gz",
] + [f"share/icons/hicolor/{n}x{n}/apps/skinframewright.png" for n in ICON_SIZES]

PACKAGE_TYPE = "application/x-brindleway-skin-package"
INFORMATION_TYPE = "application/x-brindleway-skin-information"
PACKAGE_MAGIC = b"<SKINPACKAGE>Brindleway Skin Package "


def run(args, env=None, check=True):
    done = subprocess.run([str(a) for a in args], capture_output=True, text=True, env=env, timeout=120)
    if check and done.returncode != 0:
        raise AssertionError(f"{' '.join(map(str, args))} failed ({done.returncode}):\n{done.stdout}{done.stderr}")
    return done


def fresh_folder(name):
    path = os.path.join(ARGS.work, name)
    shutil.rmtree(path, ignore_errors=True)
    os.makedirs(path)
    return path


def png_size(path):
    with open(path, "rb") as f:
        head = f.read(24)
    assert head[:8] == b"\x89PNG\r\n\x1a\n" and head[12:16] == b"IHDR", f"{path} is no PNG"
    return struct.unpack(">II", head[16:24])


def desktop_entry(path):
    entry, group = {}, None
    with open(path, encoding="utf-8") as f:
        for line in f:
            line = line.strip()
            if line.startswith("["):
                group = line
            elif group == "[Desktop Entry]" and "=" in line:
                key, value = line.split("=", 1)
                entry[key] = value
    return entry


class InstalledTree(unittest.TestCase):
    """One install into a fresh prefix, looked at as a desktop would."""

    @classmethod
    def setUpClass(cls):
        cls.prefix = fresh_folder("prefix")
        run(["cmake", "--install", ARGS.build, "--prefix", cls.prefix])
        cls.share = os.path.join(cls.prefix, "share")
        # A private desktop: user and system folders both inside the prefix, no desktop
        # environment (so xdg-mime uses the shared MIME database and mimeapps/mimeinfo files).
        home = fresh_folder("home")
        config = fresh_folder("config")
        cls.env = {k: v for k, v in os.environ.items()
                   if k not in ("DISPLAY", "WAYLAND_DISPLAY", "XDG_CURRENT_DESKTOP", "DESKTOP_SESSION",
                                "KDE_FULL_SESSION", "GNOME_DESKTOP_SESSION_ID", "XDG_MENU_PREFIX")}
        cls.env.update(HOME=home, XDG_DATA_HOME=cls.share, XDG_DATA_DIRS=cls.share,
                       XDG_CONFIG_HOME=config, XDG_CONFIG_DIRS=config)

    def path(self, relative):
        return os.path.join(self.prefix, relative)

    def test_every_file_is_installed_with_its_mode(self):
        for relative in INSTALLED:
            self.assertTrue(os.path.isfile(self.path(relative)), relative)
        for relative in PROGRAMS:
            self.assertTrue(os.access(self.path(relative), os.X_OK), relative)
            # No build-tree run path survives into the installed programs.
            self.assertNotIn("RUNPATH", run(["readelf", "-d", self.path(relative)]).stdout, relative)
        # They run from the prefix (without a display: the version and the usage need none).
        env = {k: v for k, v in os.environ.items() if k not in ("DISPLAY", "WAYLAND_DISPLAY")}
        self.assertEqual(run([self.path("bin/skinframewright"), "--version"], env=env).stdout,
                         f"skinframewright {ARGS.version}\n")
        self.assertIn("usage: bsztool", run([self.path("bin/bsztool"), "--help"], env=env).stdout)

    def test_icons_have_their_sizes_and_the_svg_is_an_svg(self):
        for n in ICON_SIZES:
            self.assertEqual(png_size(self.path(f"share/icons/hicolor/{n}x{n}/apps/skinframewright.png")), (n, n))
        root = ElementTree.parse(self.path("share/icons/hicolor/scalable/apps/skinframewright.svg")).getroot()
        self.assertEqual(root.tag, "{http://www.w3.org/2000/svg}svg")
        self.assertEqual(root.get("viewBox"), "0 0 256 256")

    def test_desktop_entry_is_valid_and_opens_both_file_types(self):
        path = self.path("share/applications/skinframewright.desktop")
        done = run(["desktop-file-validate", path], check=False)
        self.assertEqual((done.returncode, done.stdout + done.stderr), (0, ""))
        entry = desktop_entry(path)
        self.assertEqual(entry["Type"], "Application")
        self.assertRegex(entry["Exec"], r"^skinframewright %[fF]$")  # the file reaches the program
        self.assertEqual(entry["Icon"], "skinframewright")
        self.assertEqual(set(filter(None, entry["MimeType"].split(";"))), {PACKAGE_TYPE, INFORMATION_TYPE})
        self.assertTrue(os.path.isfile(os.path.join(self.prefix, "bin", entry["TryExec"])))

    def test_file_types_are_recognised_and_open_in_the_editor(self):
        mime = os.path.join(self.share, "mime")
        run(["update-mime-database", mime], env=self.env)
        run(["update-desktop-database", os.path.join(self.share, "applications")], env=self.env)

        files = fresh_folder("files")
        information = os.path.join(files, "Night.bsi")
        with open(information, "w", newline="\r\n") as f:
            f.write("[Global]\nSkin Name=Night\nSkin Send Image=send.bmp\nSkin Recieve Image=receive.bmp\n")
        package = os.path.join(files, "Night.bsz")
        run([self.path("bin/bsztool"), "pack", package, information])
        with open(package, "rb") as f:
            self.assertTrue(f.read().startswith(PACKAGE_MAGIC))
        # Renamed packages, as mail programs and browsers save them, are known by content.
        no_extension = os.path.join(files, "Night-from-mail")
        shutil.copy(package, no_extension)
        capitals = os.path.join(files, "NIGHT.BSZ")
        shutil.copy(package, capitals)
        text = os.path.join(files, "notes")
        with open(text, "w") as f:
            f.write("<SKINPACKAGE> is not at the start of this line\n")

        def filetype(path):
            return run(["xdg-mime", "query", "filetype", path], env=self.env).stdout.strip()

        for path in (package, no_extension, capitals):
            self.assertEqual(filetype(path), PACKAGE_TYPE, path)
        self.assertEqual(filetype(information), INFORMATION_TYPE)
        self.assertNotIn(filetype(text), (PACKAGE_TYPE, INFORMATION_TYPE))
        for kind in (PACKAGE_TYPE, INFORMATION_TYPE):
            self.assertEqual(run(["xdg-mime", "query", "default", kind], env=self.env).stdout.strip(),
                             "skinframewright.desktop", kind)

    def test_manual_pages_render_without_warnings(self):
        env = dict(os.environ, MANWIDTH="80", LC_ALL="C.UTF-8")
        pages = {}
        for name in ("skinframewright", "bsztool"):
            path = self.path(f"share/man/man1/{name}.1.gz")
            with gzip.open(path, "rt") as f:
                self.assertIn(f'"skinframewright {ARGS.version}"', f.readline())
            done = run(["man", "--warnings", "-l", path], env=env)
            self.assertEqual(done.stderr, "", name)
            self.assertRegex(done.stdout, rf"NAME\s+{name}\s+-\s")
            pages[name] = done.stdout
        # The page of bsztool describes every command that the program itself lists.
        listed = run([self.path("bin/bsztool"), "--help"]).stdout
        commands = re.findall(r"^  (\w+(?: \w+)?) ", listed.split("commands:")[1], re.M)
        self.assertGreaterEqual(len(commands), 5)
        for command in commands:
            self.assertRegex(pages["bsztool"], rf"\n {{7}}{command}\b", command)


class DebianPackage(unittest.TestCase):
    """`cpack -G DEB` from the build folder, looked at with dpkg-deb."""

    @classmethod
    def setUpClass(cls):
        out = fresh_folder("deb")
        run(["cpack", "-G", "DEB", "--config", os.path.join(ARGS.build, "CPackConfig.cmake"), "-B", out])
        debs = [f for f in os.listdir(out) if f.endswith(".deb")]
        assert len(debs) == 1, debs
        cls.deb = os.path.join(out, debs[0])
        cls.fields = {}
        for line in run(["dpkg-deb", "-f", cls.deb]).stdout.splitlines():
            if not line.startswith(" ") and ":" in line:
                key, value = line.split(":", 1)
                cls.fields[key] = value.strip()

    def test_fields_name_the_package_for_this_machine(self):
        architecture = run(["dpkg", "--print-architecture"]).stdout.strip()
        self.assertEqual(self.fields["Package"], "skinframewright")
        self.assertEqual(self.fields["Version"], ARGS.version)
        self.assertEqual(self.fields["Architecture"], architecture)
        self.assertEqual(os.path.basename(self.deb), f"skinframewright_{ARGS.version}_{architecture}.deb")
        self.assertEqual(self.fields["Section"], "graphics")
        self.assertRegex(self.fields["Maintainer"], r".+ <[^@ ]+@[^@ ]+>")
        self.assertTrue(self.fields["Description"])

    def test_depends_are_the_packages_of_the_linked_libraries(self):
        # What the programs link, found independently of CPack: each NEEDED library of the
        # installed programs, and the Debian package that owns it.
        prefix = fresh_folder("deb-tree")
        run(["dpkg-deb", "-x", self.deb, prefix])
        owners = set()
        for program in PROGRAMS:
            binary = os.path.join(prefix, "usr", program)
            dynamic = run(["readelf", "-d", binary]).stdout
            resolved = dict(re.findall(r"^\s*(\S+) => (\S+)", run(["ldd", binary]).stdout, re.M))
            for library in re.findall(r"\(NEEDED\)\s+Shared library: \[(.+?)\]", dynamic):
                # Owned under /lib or /usr/lib (merged /usr): match the multiarch folder and name.
                tail = os.path.join(os.path.basename(os.path.dirname(resolved[library])), library)
                lines = run(["dpkg", "-S", "*/" + tail]).stdout.splitlines()
                owners |= {line.split(": ", 1)[0].split(":")[0] for line in lines}
        depends = [d.strip() for d in self.fields["Depends"].split(",")]
        names = {re.match(r"[a-z0-9.+-]+", d).group(0) for d in depends}
        self.assertEqual(names, owners)
        self.assertIn("libqt6widgets6", names)
        for d in depends:  # each with the least version the linked symbols need
            self.assertRegex(d, r"^[a-z0-9.+-]+ \(>= [^)]+\)$")

    def test_contents_are_the_install_tree_under_usr(self):
        listing = run(["dpkg-deb", "-c", self.deb]).stdout.splitlines()
        files = {}
        for line in listing:
            mode, owner, _size, _date, _time, name = line.split(None, 5)
            self.assertEqual(owner, "root/root", name)
            if not mode.startswith("d"):
                files[name] = mode
        self.assertEqual(set(files), {"./usr/" + f for f in INSTALLED})
        for program in PROGRAMS:
            self.assertEqual(files["./usr/" + program], "-rwxr-xr-x")
        self.assertEqual(files["./usr/share/applications/skinframewright.desktop"], "-rw-r--r--")


def main():
    global ARGS
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", required=True)
    parser.add_argument("--work", required=True)
    parser.add_argument("--version", required=True)
    ARGS, rest = parser.parse_known_args()
    os.makedirs(ARGS.work, exist_ok=True)
    unittest.main(argv=[sys.argv[0]] + rest, verbosity=2)


if __name__ == "__main__":
    main()
