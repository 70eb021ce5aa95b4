"""The version of the Windows files, as the system shows it, is that of the project."""
import re
import struct
import unittest

from e2e.environment import ROOT, WIN64

FIXED = struct.pack("<I", 0xFEEF04BD)  # begins the numbers of a version


def text_after(image, name):
    """The value of a string of the version, behind its name and the fill up to four bytes."""
    key = (name + "\0").encode("utf-16-le")
    at = image.index(key) + len(key)
    words = image[at:at + 256].decode("utf-16-le", errors="replace").lstrip("\0")
    return words.split("\0")[0]


class Files(unittest.TestCase):
    def test_each_file_has_the_projects_version(self):
        version = re.search(r"^project\(ORVIN-OSD VERSION ([0-9.]+) ", (ROOT / "CMakeLists.txt").read_text(), re.M)[1]
        major, minor, patch = map(int, version.split("."))
        for name in ("ORVIN-OSD64-GL.dll", "orvin-osd.exe", "orvin-profile.exe"):
            with self.subTest(name=name):
                image = (WIN64 / name).read_bytes()
                at = image.index(FIXED)
                high, low = struct.unpack_from("<II", image, at + 8)
                self.assertEqual((high >> 16, high & 0xFFFF, low >> 16, low & 0xFFFF), (major, minor, patch, 0))
                self.assertEqual(text_after(image, "FileVersion"), version)
                self.assertEqual(text_after(image, "OriginalFilename"), name)
