#include "app/TerminationSignals.h"

#include <sys/socket.h>
#include <unistd.h>
#include <csignal>

namespace kestrum {

namespace {

int signalSockets[2] = {-1, -1};  // [0] read on the main thread, [1] written by the handler

void onSignal(int signalNumber) {
    const unsigned char number = static_cast<unsigned char>(signalNumber);
    // Nothing else is async-signal-safe here; a full pipe loses a repeated signal, which is harmless.
    [[maybe_unused]] const ssize_t written = write(signalSockets[1], &number, 1);
}

}  // namespace

TerminationSignals::TerminationSignals(QObject* parent) : QObject(parent) {
    if (socketpair(AF_UNIX, SOCK_STREAM, 0, signalSockets) != 0) return;
    notifier_ = std::make_unique<QSocketNotifier>(signalSockets[0], QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, &TerminationSignals::readSignal);
    struct sigaction action {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(SIGTERM, &action, nullptr);
    sigaction(SIGINT, &action, nullptr);
}

TerminationSignals::~TerminationSignals() {
    signal(SIGTERM, SIG_DFL);
    signal(SIGINT, SIG_DFL);
}

void TerminationSignals::readSignal() {
    unsigned char number = 0;
    if (read(signalSockets[0], &number, 1) == 1) emit terminationRequested(number);
}

}  // namespace kestrum
