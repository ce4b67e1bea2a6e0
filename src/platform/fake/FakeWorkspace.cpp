#include "platform/fake/FakeWorkspace.h"

#include <algorithm>

namespace kestrum {

WorkspaceSubscription FakeWorkspace::observe(Notice notice, Handler handler) {
    return observers_.add(notice, std::move(handler));
}

void FakeWorkspace::setRunningApplications(std::vector<RunningApplication> applications) {
    applications_ = std::move(applications);
}

void FakeWorkspace::launch(const RunningApplication& application) {
    applications_.push_back(application);
    deliver(Notice::didLaunch, application);
}

void FakeWorkspace::terminate(qint32 processIdentifier) {
    const auto first = std::find_if(applications_.begin(), applications_.end(), [&](const auto& application) {
        return application.processIdentifier == processIdentifier;
    });
    if (first == applications_.end()) return;
    const RunningApplication ended = *first;
    std::erase_if(applications_, [&](const auto& application) {
        return application.processIdentifier == processIdentifier;
    });
    deliver(Notice::didTerminate, ended);
}

void FakeWorkspace::activate(const RunningApplication& application) {
    frontmost_ = application;
    deliver(Notice::didActivate, application);
}

std::size_t FakeWorkspace::observerCount(Notice notice) const {
    return observers_.count(notice);
}

void FakeWorkspace::deliver(Notice notice, const RunningApplication& application) {
    observers_.deliver(notice, application);
}

}  // namespace kestrum
