#pragma once

#include "TemporaryFolder.hpp"

#include <QByteArray>

namespace tarvik::test {

// A folder with a project's sources, and a cmake of the test's own as the only program on the search path.
class FakeCMake final {
public:
    FakeCMake() {
        std::filesystem::create_directories(folder_ / "project/Scripts");
        writeText(source(), "");
        qputenv("PATH", folder_.path().c_str());
    }
    ~FakeCMake() { qputenv("PATH", path_); }

    // What it does, in a shell.
    void does(const std::string& commands) const {
        writeText(folder_ / "cmake", "#!/bin/sh\nPATH=/bin:/usr/bin\n" + commands);
        std::filesystem::permissions(folder_ / "cmake", std::filesystem::perms::owner_all);
    }
    void prints(const std::string& output, int status) const {
        writeText(folder_ / "output", output);
        does("cat '" + (folder_ / "output").string() + "'; exit " + std::to_string(status));
    }

    [[nodiscard]] QString project() const { return QString::fromStdString(folder_ / "project"); }
    [[nodiscard]] std::string source() const { return folder_ / "project/Scripts/A.cpp"; }
    [[nodiscard]] const TemporaryFolder& folder() const { return folder_; }

private:
    TemporaryFolder folder_;
    QByteArray path_ = qgetenv("PATH");
};

} // namespace tarvik::test
