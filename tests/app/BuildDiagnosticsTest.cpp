#include <tarvik/app/BuildDiagnostics.hpp>

#include <gtest/gtest.h>

#include <QString>

namespace tarvik::app {
namespace {

QString asText(const BuildDiagnostic& found) {
    return QString("%1 %2:%3:%4 %5\n")
        .arg(QString("EWN").mid(static_cast<int>(found.severity), 1), found.file, QString::number(found.line),
             QString::number(found.column), found.text);
}

struct Case {
    const char* tool;
    const char* output;
    const char* expected;
};

// As the tools printed it, shortened; of Visual C++ as it is documented.
const Case kCases[] = {
    {"g++: context, excerpts and a header from two sources", R"(
[1/3] Building CXX object CMakeFiles/game.dir/Scripts/A.cpp.o
FAILED: CMakeFiles/game.dir/Scripts/A.cpp.o
/usr/bin/c++ -Dgame_EXPORTS -fPIC -Wall -o A.cpp.o -c "Scripts (ü): x/A.cpp"
In file included from Scripts (ü): x/outer.hpp:2,
                 from Scripts (ü): x/A.cpp:1:
Scripts (ü): x/inner.hpp: In function ‘int half(int)’:
Scripts (ü): x/inner.hpp:2:54: error: expected ‘;’ before ‘}’ token
    2 | const char* text = "a.cpp:3: error: none"; return x / 2 }
      |                                                        ^~
Scripts (ü): x/A.cpp:7:7:   required from here
In file included from Scripts (ü): x/B.cpp:1:
Scripts (ü): x/inner.hpp:2:54: error: expected ‘;’ before ‘}’ token
Scripts (ü): x/B.cpp:2:10: fatal error: missing.hpp: No such file or directory
compilation terminated.
ninja: build stopped: subcommand failed.
)",
     "E Scripts (ü): x/inner.hpp:2:54 expected ‘;’ before ‘}’ token\n"
     "E Scripts (ü): x/B.cpp:2:10 missing.hpp: No such file or directory\n"},
    {"g++ in colour",
     "\x1b[01m\x1b[KC.cpp:1:15:\x1b[m\x1b[K \x1b[01;31m\x1b[Kerror: "
     "\x1b[m\x1b[K‘\x1b[01m\x1b[Kdo_it\x1b[m\x1b[K’ "
     "was not declared in this scope\r\n"
     "\x1b[01m\x1b[KC.cpp:2:18:\x1b[m\x1b[K \x1b[01;35m\x1b[Kwarning: \x1b[m\x1b[Kno return statement "
     "[\x1b]8;;https://x.org\x1b\\-Wreturn-type\x1b]8;;\x1b\\]\r\n",
     "E C.cpp:1:15 ‘do_it’ was not declared in this scope\n"
     "W C.cpp:2:18 no return statement [-Wreturn-type]\n"},
    {"clang++: excerpts stand at the margin", R"(
x/A.cpp:4:45: error: member reference base type 'int' is not a structure or union
throw error("a.cpp:3: error: none"); return t.nothing(); }
                                            ~^~~~~~~~
x/A.cpp:7:3: note: in instantiation of function template specialization 'call<int>' requested here
  call(4);
  ^
1 error generated.
)",
     "E x/A.cpp:4:45 member reference base type 'int' is not a structure or union\n"
     "N x/A.cpp:7:3 in instantiation of function template specialization 'call<int>' requested here\n"},
    {"ld, native and for Windows", R"(
/usr/bin/ld: e.o: in function `twice()':
/tmp/x (ü): y/E.cpp:2: multiple definition of `twice()'; d.o:/tmp/x/D.cpp:2: first defined here
/usr/bin/ld: /tmp/x/D.cpp:3: undefined reference to `V::~V()'
/usr/bin/ld: /tmp/x/D.cpp:3: undefined reference to `V::~V()'
D.cpp:(.text+0x1a): undefined reference to `gone(int)'
/usr/bin/x86_64-w64-mingw32-ld: dw.o:D.cpp:(.rdata$.refptr+0x0): undefined reference to `vtable for V'
/usr/bin/ld: np.o: warning: relocation against `g' in read-only section `.text'
/usr/bin/ld: cannot find -lnothing: No such file or directory
collect2: error: ld returned 1 exit status
)",
     "E /tmp/x (ü): y/E.cpp:2:0 multiple definition of `twice()'; d.o:/tmp/x/D.cpp:2: first defined "
     "here\n"
     "E /tmp/x/D.cpp:3:0 undefined reference to `V::~V()'\n"
     "E D.cpp:0:0 undefined reference to `gone(int)'\n"
     "E D.cpp:0:0 undefined reference to `vtable for V'\n"
     "W :0:0 np.o: relocation against `g' in read-only section `.text'\n"
     "E :0:0 cannot find -lnothing: No such file or directory\n"},
    {"lld", R"(
ld.lld: error: undefined symbol: gone(int)
>>> referenced by D.cpp:3 (Scripts (ü): x/D.cpp:3)
>>>               d.o:(user())
collect2: error: ld returned 1 exit status
)",
     "E Scripts (ü): x/D.cpp:3:0 undefined symbol: gone(int)\n"},
    {"a linker that gives no reason", "clang: error: linker command failed with exit code 1\n",
     "E :0:0 linker command failed with exit code 1\n"},
    {"cmake", R"(
-- The CXX compiler identification is GNU 12.2.0
CMake Error at CMakeLists.txt:3 (find_package):
  By not providing "FindNothing.cmake" in CMAKE_MODULE_PATH this project has
  asked CMake to find a package.

  Could not find any of the following:

    NothingConfig.cmake

Call Stack (most recent call first):
  CMakeLists.txt:6 (ff)


CMake Warning (dev) in My (1)/CMakeLists.txt:
  No project() command is present.
This warning is for project developers.  Use -Wno-dev to suppress it.

CMake Error: The source directory "/tmp/nowhere" does not exist.
-- Configuring incomplete, errors occurred!
Error: could not load cache
ninja: error: build.ninja:1: expected '=', got newline
gmake[1]: *** No rule to make target 'x.cpp', needed by 'x.o'.  Stop.
gmake: *** [Makefile:91: all] Error 2
)",
     "E CMakeLists.txt:3:0 By not providing \"FindNothing.cmake\" in CMAKE_MODULE_PATH this project has "
     "asked "
     "CMake to find a package.\nCould not find any of the following:\n  NothingConfig.cmake\n"
     "W My (1)/CMakeLists.txt:0:0 No project() command is present.\n"
     "E :0:0 The source directory \"/tmp/nowhere\" does not exist.\n"
     "E :0:0 could not load cache\n"
     "E :0:0 build.ninja:1: expected '=', got newline\n"
     "E :0:0 No rule to make target 'x.cpp', needed by 'x.o'.  Stop.\n"},
    {"cl, link and MSBuild", R"(
  A.cpp
C:\Jörg (x)\Scripts\A.cpp(6,3): error C3861: 'unknown': identifier not found [C:\Jörg (x)\game.vcxproj]
2>C:\Jörg (x)\Scripts\A.cpp(7): warning C4101: 'unused': unreferenced local variable [C:\game.vcxproj]
C:\Jörg (x)\Scripts\A.cpp(4,1): message : see declaration of 'call' [C:\game.vcxproj]
Note: including file: C:\x.hpp
a.cpp(1) : error   : no code
cl : Command line warning D9002 : ignoring unknown option '/bogus'
A.obj : error LNK2019: unresolved external symbol gone referenced in function user
C:\out\game.dll : fatal error LNK1120: 1 unresolved externals
       C:\Jörg (x)\Scripts\A.cpp(6,3): error C3861: 'unknown': identifier not found [C:\Jörg (x)\game.vcxproj]
)",
     "E C:/Jörg (x)/Scripts/A.cpp:6:3 C3861: 'unknown': identifier not found\n"
     "W C:/Jörg (x)/Scripts/A.cpp:7:0 C4101: 'unused': unreferenced local variable\n"
     "N C:/Jörg (x)/Scripts/A.cpp:4:1 see declaration of 'call'\n"
     "W :0:0 D9002: ignoring unknown option '/bogus'\n"
     "E :0:0 A.obj: LNK2019: unresolved external symbol gone referenced in function user\n"},
};

TEST(BuildDiagnosticsTest, FindsWhatEachToolComplainsAboutAndNothingElse) {
    for (const Case& tool : kCases) {
        QString found;
        for (const BuildDiagnostic& diagnostic : BuildDiagnostics(QString(tool.output)).list())
            found += asText(diagnostic);
        EXPECT_EQ(found.toStdString(), tool.expected) << tool.tool;
    }
}

// Each would take minutes in time that grows with the square.
TEST(BuildDiagnosticsTest, HostileOutputTakesNoLongerThanOtherOutput) {
    for (const char* part :
         {": error: ", "1", ":1: note:", "\x1b[", "\x1b]", "a(1,", "((", " ^", ">>> x\n", "  \n"}) {
        QString output("ld.lld: error: a\nCMake Error:\n  a\n");
        output += QString(part).repeated(1'000'000);
        output += ": undefined reference to `x'): error: x";
        EXPECT_LT(BuildDiagnostics(output).list().size(), 10) << part;
    }
}

} // namespace
} // namespace tarvik::app
