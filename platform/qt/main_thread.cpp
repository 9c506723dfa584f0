#include "platform/qt/main_thread.h"

#include <QCoreApplication>
#include <utility>

namespace kivra::qt {

void callOnMainThread(std::function<void()> block) {
  auto* const application = QCoreApplication::instance();
  if (application == nullptr) return;
  QMetaObject::invokeMethod(application, std::move(block), Qt::QueuedConnection);
}

}  // namespace kivra::qt
