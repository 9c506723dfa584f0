#include "platform/qt/qt_keychain.h"

#include <qt6keychain/keychain.h>

#include <QEventLoop>
#include <QTimer>
#include <memory>

namespace kivra::qt {

namespace {

constexpr const char* noAnswer =
    "Kivra: хранилище паролей заперто или не отвечает, ключ DeepL недоступен";

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

}  // namespace

QtKeychain::Answer QtKeychain::answerOf(const QKeychain::Job& job) {
  Answer answer{statusOf(job.error()), {}};
  if (const auto* read = qobject_cast<const QKeychain::ReadPasswordJob*>(&job)) {
    answer.data = read->binaryData().toStdString();
  }
  return answer;
}

QtKeychain::Answer QtKeychain::run(QKeychain::Job& job) {
  const auto answer = std::make_shared<std::optional<Answer>>();
  QEventLoop loop;
  QTimer deadline;
  QObject::connect(&job, &QKeychain::Job::finished, &job,
                   [answer](QKeychain::Job* finished) { answer->emplace(answerOf(*finished)); });
  QObject::connect(&job, &QKeychain::Job::finished, &loop, &QEventLoop::quit);
  QObject::connect(&deadline, &QTimer::timeout, &loop, &QEventLoop::quit);
  deadline.setSingleShot(true);
  deadline.start(options_.wait);
  job.start();
  if (!*answer) loop.exec();
  if (!*answer && options_.report) options_.report(noAnswer);
  return answer->value_or(Answer{});
}

std::optional<std::string> QtKeychain::itemCopyMatching(const KeychainItem& item) {
  auto answer = run(makeJob<QKeychain::ReadPasswordJob>(item));
  if (answer.status != KeychainStatus::success) return std::nullopt;
  return std::move(answer.data);
}

void QtKeychain::itemCopyMatchingLater(const KeychainItem& item,
                                       const KeychainCompletion& completion) {
  auto& job = makeJob<QKeychain::ReadPasswordJob>(item);
  QObject::connect(&job, &QKeychain::Job::finished, &job,
                   [called = completion](QKeychain::Job* finished) {
                     auto answer = answerOf(*finished);
                     const auto isRead = answer.status == KeychainStatus::success;
                     called(isRead ? std::optional(std::move(answer.data)) : std::nullopt);
                   });
  job.start();
}

KeychainStatus QtKeychain::itemUpdate(const KeychainItem& item, std::string_view data) {
  const auto present = run(makeJob<QKeychain::ReadPasswordJob>(item)).status;
  return present == KeychainStatus::success ? itemAdd(item, data) : present;
}

// The services replace an item that is there.
KeychainStatus QtKeychain::itemAdd(const KeychainItem& item, std::string_view data) {
  auto& job = makeJob<QKeychain::WritePasswordJob>(item);
  job.setBinaryData(QByteArray(data.data(), static_cast<qsizetype>(data.size())));
  return run(job).status;
}

KeychainStatus QtKeychain::itemDelete(const KeychainItem& item) {
  return run(makeJob<QKeychain::DeletePasswordJob>(item)).status;
}

}  // namespace kivra::qt
