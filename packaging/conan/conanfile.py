# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
"""Untested. `conan create packaging/conan`, from the folder of the project."""

import os
import re

from conan import ConanFile
from conan.tools.build import check_min_cppstd
from conan.tools.cmake import CMake, CMakeDeps, CMakeToolchain, cmake_layout
from conan.tools.files import copy, load

FILES = ("CMakeLists.txt", "LICENSE", "cmake/*", "include/*", "base/*", "stream/*", "pool/*",
         "array/*", "bits/*", "hash/*", "btree/*", "list/*", "tree/*", "text/*", "debugger/*")


class QekStd(ConanFile):
    name = "qek_std"
    license = "MIT"
    author = "The qek_std authors"
    description = "Containers and text primitives over records that the caller owns"
    topics = ("containers", "strings", "serialisation")
    package_type = "library"
    settings = "os", "arch", "compiler", "build_type"
    options = {"shared": [True, False]}
    default_options = {"shared": True}

    def _root(self):
        return os.path.join(self.recipe_folder, os.pardir, os.pardir)

    def set_version(self):
        header = load(self, os.path.join(self._root(), "include", "qek_std.h"))
        self.version = re.search(r'#define QEK_STD_VERSION "(.*)"', header).group(1)

    def export_sources(self):
        for pattern in FILES:
            copy(self, pattern, self._root(), self.export_sources_folder)

    def validate(self):
        if self.settings.compiler.get_safe("cppstd"):
            check_min_cppstd(self, 20)

    def layout(self):
        cmake_layout(self)

    def generate(self):
        toolchain = CMakeToolchain(self)
        toolchain.cache_variables["QEK_TESTS"] = False
        toolchain.generate()
        CMakeDeps(self).generate()

    def build(self):
        cmake = CMake(self)
        cmake.configure()
        cmake.build()

    def package(self):
        copy(self, "LICENSE", self.source_folder, os.path.join(self.package_folder, "licenses"))
        CMake(self).install()

    def package_info(self):
        shared = bool(self.options.shared)
        self.cpp_info.libs = ["qek_std" if shared else "qek_std_static"]
        self.cpp_info.defines = [] if shared else ["QEK_STD_STATIC"]
        self.cpp_info.set_property("cmake_file_name", "qek_std")
        self.cpp_info.set_property(
            "cmake_target_name", "qek::qek_std" if shared else "qek::qek_std_static")
        self.cpp_info.set_property("pkg_config_name", "qek_std")
