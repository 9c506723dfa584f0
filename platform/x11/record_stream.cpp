#include "platform/x11/record_stream.h"

#include <X11/Xproto.h>
#include <X11/extensions/xtestproto.h>
#include <poll.h>

#include <array>
#include <stdexcept>
#include <utility>

namespace kivra::x11 {

namespace {

struct FreeRange {
  void operator()(XRecordRange* range) const { XFree(range); }
};
using Range = std::unique_ptr<XRecordRange, FreeRange>;

Range newRange() {
  Range range(XRecordAllocRange());
  if (!range) throw std::runtime_error("out of memory");
  return range;
}

XRecordContext createContext(Display* data, Display* posting, int testOpcode) {
  const auto events = newRange();
  events->device_events.first = KeyPress;
  events->device_events.last = ButtonPress;
  const auto grabs = newRange();
  grabs->core_requests.first = X_GrabKeyboard;
  grabs->core_requests.last = X_GrabKeyboard;
  const auto fences = newRange();
  fences->core_requests.first = X_NoOperation;
  fences->core_requests.last = X_NoOperation;
  const auto fakes = newRange();
  fakes->ext_requests.ext_major.first = static_cast<unsigned char>(testOpcode);
  fakes->ext_requests.ext_major.last = static_cast<unsigned char>(testOpcode);
  fakes->ext_requests.ext_minor.first = X_XTestFakeInput;
  fakes->ext_requests.ext_minor.last = X_XTestFakeInput;
  std::array<XRecordRange*, 4> ranges = {events.get(), grabs.get(), fences.get(), fakes.get()};
  // Any resource of a client stands for the client.
  XRecordClientSpec client = XCreatePixmap(posting, DefaultRootWindow(posting), 1, 1, 1);
  XSync(posting, False);
  const auto context =
      XRecordCreateContext(data, 0, &client, 1, ranges.data(), static_cast<int>(ranges.size()));
  XSync(data, False);
  XFreePixmap(posting, client);
  return context;
}

}  // namespace

RecordStream::RecordStream(Display* posting)
    : posting_(posting),
      data_(XOpenDisplay(DisplayString(posting))),
      testOpcode_(extensionOpcode(posting, "XTEST")) {
  if (!data_) throw std::runtime_error("no second connection to the X server");
  context_ = createContext(data_.get(), posting, testOpcode_);
  if (context_ == 0 || XRecordEnableContextAsync(data_.get(), context_, intercept,
                                                 reinterpret_cast<XPointer>(this)) == 0) {
    throw std::runtime_error("RECORD refuses a context");
  }
  // Only after the answer is the context certain to be on; the call above may have read it.
  XFlush(data_.get());
  while (!isOn_ && wait(std::chrono::seconds(1))) drain();
}

RecordStream::~RecordStream() = default;

void RecordStream::expect(const Posted& posted) { expected_.push_back(posted); }

void RecordStream::drain() {
  XRecordProcessReplies(data_.get());
  // Every client is told of a changed keyboard map, asked or not; an event left in the queue would
  // look like something to read for ever.
  XEvent event;
  while (XEventsQueued(data_.get(), QueuedAlready) > 0) XNextEvent(data_.get(), &event);
}

void RecordStream::catchUp() {
  using Clock = std::chrono::steady_clock;
  // Recorded behind all that the requests before it have caused.
  XNoOp(posting_);
  ++fencesSent_;
  // The bound keeps a server that misbehaves from hanging the guard.
  const auto deadline = Clock::now() + std::chrono::milliseconds(500);
  do {
    // The server may go to sleep on records that it has written only when it answered somebody
    // else; any request wakes it.
    XSync(posting_, False);
    drain();
    if (fencesSeen_ < fencesSent_ && wait(std::chrono::milliseconds(1))) drain();
  } while (fencesSeen_ < fencesSent_ && Clock::now() < deadline);
  // A press of a key that was down makes no event: then a user's must not be taken for it.
  if (fencesSeen_ == fencesSent_) pending_.reset();
}

bool RecordStream::wait(std::chrono::milliseconds timeout) {
  if (XEventsQueued(data_.get(), QueuedAlready) > 0) return true;
  pollfd descriptor{.fd = fd(), .events = POLLIN, .revents = 0};
  return ::poll(&descriptor, 1, static_cast<int>(timeout.count())) > 0;
}

void RecordStream::intercept(XPointer self, XRecordInterceptData* data) {
  auto& stream = *reinterpret_cast<RecordStream*>(self);
  if (data->category == XRecordStartOfData) stream.isOn_ = true;
  if (data->category == XRecordFromClient) {
    stream.takeRequest(data->data);
  } else if (data->category == XRecordFromServer) {
    stream.takeEvent(data->data);
  }
  XRecordFreeData(data);
}

void RecordStream::takeRequest(const unsigned char* request) {
  if (request[0] == X_NoOperation) ++fencesSeen_;
  if (request[0] == X_GrabKeyboard) {
    countAtGrab_ = events_.size();
    return;
  }
  if (request[0] != testOpcode_ || expected_.empty()) return;
  countAtLastPosted_ = events_.size();
  // The event's type and detail follow the four bytes of the request's header.
  pending_ = Pending{request[4], request[5], expected_.front()};
  expected_.pop_front();
}

void RecordStream::takeEvent(const unsigned char* event) {
  const auto type = static_cast<std::uint8_t>(event[0] & 0x7F);
  RecordedEvent recorded{.kind = RecordedEvent::Kind::keyDown, .code = event[1]};
  if (type == KeyRelease) {
    recorded.kind = RecordedEvent::Kind::keyUp;
  } else if (type == ButtonPress) {
    recorded.kind = RecordedEvent::Kind::buttonDown;
  } else if (type != KeyPress) {
    return;
  }
  if (pending_ && pending_->type == type && pending_->code == recorded.code) {
    const auto posted = pending_->posted;
    pending_.reset();
    if (posted.isReplay) return;
    recorded.isOwn = true;
    recorded.userData = posted.userData;
  }
  events_.push_back(recorded);
}

}  // namespace kivra::x11
