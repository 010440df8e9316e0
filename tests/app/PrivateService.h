#pragma once

#include <gtest/gtest.h>
#include <signal.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QStandardPaths>
#include <cstdio>
#include <stdexcept>

namespace tessel {

/// A service on a bus of its own, to which this process is led by the variable. Qt asks for a bus once a
/// process, so it is to be made before anybody else asks, in a test that runs alone.
class PrivateService : public QDBusVirtualObject {
  public:
    static bool isPossible() {
        return testing::UnitTest::GetInstance()->test_to_run_count() == 1 &&
               !QStandardPaths::findExecutable("dbus-daemon").isEmpty();
    }

    PrivateService(const char* variable, const QString& service, const QString& path) : name(service) {
        auto* output = popen("dbus-daemon --session --fork --print-address=1 --print-pid=1", "r");
        char address[200] = "";
        if (!output || std::fscanf(output, "%199s %d", address, &bus) != 2)
            throw std::runtime_error("no bus");
        pclose(output);
        qputenv(variable, address);
        auto connection = QDBusConnection::connectToBus(address, name);
        if (!connection.registerVirtualObject(path, this) || !connection.registerService(service))
            throw std::runtime_error(connection.lastError().message().toStdString());
    }
    ~PrivateService() override {
        QDBusConnection::disconnectFromBus(name);
        kill(bus, SIGTERM);
    }

    QString introspect(const QString&) const override { return {}; }

  private:
    QString name;
    pid_t bus = 0;
};

}  // namespace tessel
