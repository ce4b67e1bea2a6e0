#pragma once

#include <QByteArray>

namespace kestrum::simulator {

// One HTTP answer of a simulated service.
struct SimulatorAnswer {
    int status = 200;
    QByteArray body;
    QByteArray contentType = "application/json";
};

}  // namespace kestrum::simulator
