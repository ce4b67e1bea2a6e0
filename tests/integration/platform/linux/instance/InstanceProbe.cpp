// kestrum-test-instance-probe SOCKET [STARTUP_ID [EVENT_TIME]]: one launch of a program that uses the
// single-instance channel at SOCKET. Prints "listening", "forwarded" or "failed"; a listening probe then
// prints "request <startup id> <event time>" for the first later launch and exits 0. A forwarded launch
// exits 0, a failed one 3.
#include "platform/linux/instance/LocalSocketSingleInstanceChannel.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char** argv) {
    using namespace kestrum;
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 2) return 2;
    ActivationToken token;
    if (arguments.size() > 2) token.startupID = arguments.at(2);
    if (arguments.size() > 3) token.eventTimeMs = arguments.at(3).toUInt();

    LocalSocketSingleInstanceChannel channel(arguments.at(1), 1000);
    const SingleInstanceChannel::Outcome outcome = channel.claim({token});
    const char* word = outcome == SingleInstanceChannel::Outcome::listening   ? "listening"
                       : outcome == SingleInstanceChannel::Outcome::forwarded ? "forwarded"
                                                                              : "failed";
    std::printf("%s\n", word);
    std::fflush(stdout);
    if (outcome == SingleInstanceChannel::Outcome::forwarded) return 0;
    if (outcome == SingleInstanceChannel::Outcome::failed) return 3;
    const Subscription requests =
        channel.observeRequests([](const SingleInstanceChannel::Request& forwarded) {
            const ActivationToken& request = forwarded.token;
            std::printf("request %s %s\n",
                        qPrintable(request.startupID.isEmpty() ? QStringLiteral("-") : request.startupID),
                        request.eventTimeMs ? qPrintable(QString::number(*request.eventTimeMs)) : "-");
            std::fflush(stdout);
            QCoreApplication::quit();
        });
    return QCoreApplication::exec();
}
