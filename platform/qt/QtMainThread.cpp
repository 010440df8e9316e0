#include "platform/qt/QtMainThread.h"

#include <QCoreApplication>
#include <utility>

namespace tessel {

void QtMainThread::post(std::function<void()> work) {
    QMetaObject::invokeMethod(QCoreApplication::instance(), std::move(work), Qt::QueuedConnection);
}

}  // namespace tessel
