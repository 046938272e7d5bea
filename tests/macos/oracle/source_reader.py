"""The project's sources and declarations, read with libclang: types as the compiler encodes them."""

from ctypes import c_uint
from dataclasses import dataclass, field
from pathlib import Path

from clang.cindex import Cursor, CursorKind, Index, Type, TypeKind, _CXString, conf

TARGETS = {"x86_64": "x86_64-apple-macosx10.13", "arm64": "arm64-apple-macosx11.0"}
OLDEST = {"x86_64": (10, 13), "arm64": (11, 0)}

# As the compiler of the build sets them for its C++ library.
CXX_OPTIONS = ["-nostdinc++", "-D_LIBCPP_DISABLE_VISIBILITY_ANNOTATIONS", "-D_LIBCPP_ABI_VERSION=1",
               "-D_LIBCPP_HAS_NO_VENDOR_AVAILABILITY_ANNOTATIONS", "-D_LIBCPP_ABI_NAMESPACE=__1",
               "-D_LIBCPP_PSTL_CPU_BACKEND_SERIAL",
               "-D_LIBCPP_HARDENING_MODE=_LIBCPP_HARDENING_MODE_NONE"]


@dataclass
class Item:
    """One thing that is declared or used."""
    kind: str
    name: str
    where: str
    types: list = field(default_factory=list)  # encodings, the result's first
    value: object = None
    owner: str = ""
    class_method: bool = False
    variadic: bool = False
    inline: bool = False
    symbol: str = ""

    def title(self):
        if self.kind == "protocol method":
            return f"<{self.owner} {self.name}>"
        if self.owner:
            return f"{'+' if self.class_method else '-'}[{self.owner} {self.name}]"
        return self.name


def _objc_encoding():
    function = conf.lib.clang_Type_getObjCEncoding
    function.argtypes, function.restype = [Type], _CXString
    function.errcheck = _CXString.from_result
    return function


def encoding(type_):
    return _objc_encoding()(type_)


def _is_variadic(cursor):
    function = conf.lib.clang_Cursor_isVariadic
    function.argtypes, function.restype = [Cursor], c_uint
    return bool(function(cursor))


class SourceReader:
    def __init__(self, root, tools, arch, changed=None):
        """`changed` maps files to texts that replace their contents."""
        self.root, self.arch = Path(root).resolve(), arch
        self.sdk = self.root / "platform/macos-sdk"
        self.more = self.root / "tests/macos/declarations"
        self.system = Path(tools, "lib").resolve()
        self.changed = [(str(path), text) for path, text in (changed or {}).items()]
        self.index = Index.create()

    def _options(self, language, more):
        cxx = [*CXX_OPTIONS, "-std=c++17", "-isystem", f"{self.system}/libcxx/include",
               "-isystem", f"{self.system}/libcxxabi/include"] if "++" in language else []
        return ["-target", TARGETS[self.arch], "-x", language, "-nostdinc", "-w", *cxx,
                "-isystem", f"{self.system}/include",
                "-isystem", f"{self.system}/libc/include/any-macos-any",
                "-isystem", f"{self.sdk}/include", "-iframework", f"{self.sdk}/Frameworks",
                "-I", str(self.root), *more]

    def diagnosed(self, path, language, text=None, more=()):
        """The translation unit, whatever is wrong with it."""
        unsaved = [*self.changed, *([(str(path), text)] if text is not None else [])]
        return self.index.parse(str(path), self._options(language, more), unsaved)

    def parse(self, path, language, text=None, more=()):
        unit = self.diagnosed(path, language, text, more)
        errors = [d for d in unit.diagnostics if d.severity >= 3]
        if errors:
            raise RuntimeError(f"{path}: {errors[0]}")
        return unit

    def where(self, cursor):
        path = Path(cursor.location.file.name).resolve()
        if path.is_relative_to(self.root):
            path = path.relative_to(self.root)
        return f"{path}:{cursor.location.line}"

    def method(self, cursor, owner, kind="method"):
        types = [cursor.result_type, *(a.type for a in cursor.get_arguments())]
        return Item(kind, cursor.spelling, self.where(cursor), [encoding(t) for t in types], owner=owner,
                    class_method=cursor.kind == CursorKind.OBJC_CLASS_METHOD_DECL,
                    variadic=_is_variadic(cursor))

    def function(self, cursor):
        types = [cursor.result_type, *(a.type for a in cursor.get_arguments())]
        return Item("function", cursor.spelling, self.where(cursor), [encoding(t) for t in types],
                    variadic=cursor.type.kind == TypeKind.FUNCTIONPROTO and cursor.type.is_function_variadic(),
                    symbol=cursor.mangled_name, inline=cursor.storage_class.name == "STATIC")
