#include "platform/qt/qt_keychain.h"

#include <qt6keychain/keychain.h>

#include <QEventLoop>
#include <QTimer>
#include <memory>

namespace kivra::qt {

namespace {

struct Answer {
  KeychainStatus status = KeychainStatus::notAvailable;
  std::string data;
};

KeychainStatus statusOf(QKeychain::Error error) {
  switch (error) {
    case QKeychain::NoError:
      return KeychainStatus::success;
    case QKeychain::EntryNotFound:
      return KeychainStatus::itemNotFound;
    default:
      return KeychainStatus::notAvailable;
  }
}

/// A job of this kind for the item. It deletes itself when it has finished, which may be long after
/// nobody waits for it any more.
template <class Job>
Job& makeJob(const KeychainItem& item) {
  auto* const job = new Job(QString::fromStdString(item.service));
  job->setKey(QString::fromStdString(item.account));
  job->setInsecureFallback(false);
  return *job;
}

Answer run(QKeychain::Job& job, std::chrono::milliseconds wait) {
  const auto answer = std::make_shared<std::optional<Answer>>();
  QEventLoop loop;
  QTimer deadline;
  QObject::connect(&job, &QKeychain::Job::finished, &job, [answer](QKeychain::Job* finished) {
    answer->emplace(Answer{statusOf(finished->error()), {}});
    if (const auto* read = qobject_cast<QKeychain::ReadPasswordJob*>(finished)) {
      (*answer)->data = read->binaryData().toStdString();
    }
  });
  QObject::connect(&job, &QKeychain::Job::finished, &loop, &QEventLoop::quit);
  QObject::connect(&deadline, &QTimer::timeout, &loop, &QEventLoop::quit);
  deadline.setSingleShot(true);
  deadline.start(wait);
  job.start();
  if (!*answer) loop.exec();
  return answer->value_or(Answer{});
}

}  // namespace

std::optional<std::string> QtKeychain::itemCopyMatching(const KeychainItem& item) {
  auto answer = run(makeJob<QKeychain::ReadPasswordJob>(item), options_.wait);
  if (answer.status != KeychainStatus::success) return std::nullopt;
  return std::move(answer.data);
}

KeychainStatus QtKeychain::itemUpdate(const KeychainItem& item, std::string_view data) {
  const auto present = run(makeJob<QKeychain::ReadPasswordJob>(item), options_.wait).status;
  return present == KeychainStatus::success ? itemAdd(item, data) : present;
}

// The services replace an item that is there.
KeychainStatus QtKeychain::itemAdd(const KeychainItem& item, std::string_view data) {
  auto& job = makeJob<QKeychain::WritePasswordJob>(item);
  job.setBinaryData(QByteArray(data.data(), static_cast<qsizetype>(data.size())));
  return run(job, options_.wait).status;
}

KeychainStatus QtKeychain::itemDelete(const KeychainItem& item) {
  return run(makeJob<QKeychain::DeletePasswordJob>(item), options_.wait).status;
}

}  // namespace kivra::qt
