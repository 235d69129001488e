#pragma once

#include "Compare.hpp"

#include <QByteArray>
#include <QCoreApplication>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <stdexcept>
#include <string>

namespace tarvik::bench {

struct ProgramRun {
    QByteArray line;          // the first that it printed
    double nanoseconds = 0.0; // from the start of the process to that line
};

// Runs a program that lies beside this one until it has ended.
inline ProgramRun runProgram(const QString& name, const QStringList& arguments = {}) {
    constexpr int patienceMs = 30'000;
    const auto expect = [&name](bool held, const QString& what) {
        if (!held)
            throw std::runtime_error((name + QStringLiteral(": ") + what).toStdString());
    };
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    const auto start = Clock::now();
    process.start(QCoreApplication::applicationDirPath() + u'/' + name, arguments);
    while (!process.canReadLine())
        expect(process.waitForReadyRead(patienceMs),
               QStringLiteral("printed no line: ") + process.errorString());
    ProgramRun run;
    run.nanoseconds = nanoseconds(Clock::now() - start);
    run.line = process.readLine();
    expect(process.waitForFinished(patienceMs), QStringLiteral("did not end"));
    expect(process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0, QStringLiteral("failed"));
    return run;
}

} // namespace tarvik::bench
