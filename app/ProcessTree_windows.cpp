#include "ProcessTree.hpp"

#include <windows.h>

#include <type_traits>
#include <vector>

namespace tarvik::app {

namespace {

constexpr int kLimit = 2900; // milliseconds

struct HandleCloser {
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<std::remove_pointer_t<HANDLE>, HandleCloser>;

} // namespace

struct ProcessTree::Members {
    Handle job{CreateJobObjectW(nullptr, nullptr)};
    HANDLE jobToJoin = job.get();
    STARTUPINFOEXW startup{};
    std::vector<char> attributes;

    Members() {
        // So that nothing outlives an editor that crashes, either.
        JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
        limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
        SetInformationJobObject(job.get(), JobObjectExtendedLimitInformation, &limits, sizeof limits);

        SIZE_T size = 0;
        InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
        attributes.resize(size);
        auto* const list = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(attributes.data());
        if (InitializeProcThreadAttributeList(list, 1, 0, &size) != 0)
            startup.lpAttributeList = list;
    }
    Members(const Members&) = delete;
    Members& operator=(const Members&) = delete;
    ~Members() {
        if (startup.lpAttributeList)
            DeleteProcThreadAttributeList(startup.lpAttributeList);
    }

    // A child that is put into the job only after its start could have started others outside it.
    void join(QProcess::CreateProcessArguments& arguments) {
        if (!job || !startup.lpAttributeList ||
            UpdateProcThreadAttribute(startup.lpAttributeList, 0, PROC_THREAD_ATTRIBUTE_JOB_LIST, &jobToJoin,
                                      sizeof jobToJoin, nullptr, nullptr) == 0)
            return;
        startup.StartupInfo = *arguments.startupInfo;
        startup.StartupInfo.cb = sizeof startup;
        arguments.startupInfo = &startup.StartupInfo;
        arguments.flags |= EXTENDED_STARTUPINFO_PRESENT;
    }
};

ProcessTree::ProcessTree(QObject* parent) : QProcess(parent), members_(std::make_unique<Members>()) {
    setCreateProcessArgumentsModifier(
        [this](CreateProcessArguments* arguments) { members_->join(*arguments); });
}

ProcessTree::~ProcessTree() {
    if (state() != NotRunning)
        end();
}

void ProcessTree::launch(const QString& program, const QStringList& arguments) {
    start(program, arguments);
}

void ProcessTree::end() {
    TerminateJobObject(members_->job.get(), 1);
    kill(); // where it could not join
    waitForFinished(kLimit);
}

} // namespace tarvik::app
