#include "platform/fake/FakeWorkspace.h"

#include <algorithm>

namespace kestrum {

WorkspaceSubscription FakeWorkspace::observe(Notice notice, Handler handler) {
    const std::uint64_t id = registry_->nextId++;
    registry_->handlers.emplace(id, std::make_pair(notice, std::move(handler)));
    return WorkspaceSubscription([weakRegistry = std::weak_ptr<Registry>(registry_), id] {
        if (const auto registry = weakRegistry.lock()) registry->handlers.erase(id);
    });
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
    return static_cast<std::size_t>(
        std::count_if(registry_->handlers.begin(), registry_->handlers.end(),
                      [&](const auto& entry) { return entry.second.first == notice; }));
}

void FakeWorkspace::deliver(Notice notice, const RunningApplication& application) {
    std::vector<std::uint64_t> ids;
    for (const auto& [id, entry] : registry_->handlers) {
        if (entry.first == notice) ids.push_back(id);
    }
    // A handler may drop its own or another subscription: look each one up again before calling it,
    // and call a copy so that dropping the running one does not destroy it mid-call.
    for (const std::uint64_t id : ids) {
        const auto found = registry_->handlers.find(id);
        if (found == registry_->handlers.end()) continue;
        const Handler handler = found->second.second;
        handler(application);
    }
}

}  // namespace kestrum
