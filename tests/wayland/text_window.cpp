#include "text_window.h"

#include <fcntl.h>
#include <linux/input-event-codes.h>
#include <poll.h>
#include <sys/mman.h>
#include <unistd.h>
#include <xkbcommon/xkbcommon.h>

#include <array>
#include <set>
#include <span>
#include <stdexcept>

#include "platform/wayland/client/calls.h"
#include "platform/wayland/client/compiled_map.h"
#include "platform/xkb/virtual_keys.h"
#include "text-input-unstable-v3-client-protocol.h"
#include "x_session.h"
#include "xdg-shell-client-protocol.h"

namespace kivra::e2e {

namespace {

using namespace std::chrono_literals;
using wayland::Calls;
using wayland::Ignores;
using wayland::Owned;

constexpr int side = 64;  // pixels
constexpr int stride = side * 4;

void removeLastScalar(std::string& text) {
  while (!text.empty() && (static_cast<unsigned char>(text.back()) & 0xC0) == 0x80) {
    text.pop_back();
  }
  if (!text.empty()) text.pop_back();
}

}  // namespace

class TextWindow::Client {
 public:
  explicit Client(std::optional<Content> content);
  ~Client();
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;

  /// What the window's thread and the test's both see.
  struct Shown {
    std::string text;
    std::vector<Key> keys;
    std::set<std::uint16_t> down;
    bool hasFocus = false;
    int fieldEntries = 0;
  };
  Shown shown() const {
    const std::lock_guard lock(mutex_);
    return shown_;
  }
  bool isField() const { return field_ != nullptr; }
  void clear() {
    const std::lock_guard lock(mutex_);
    shown_.text.clear();
    shown_.keys.clear();
  }

 private:
  void createBuffer();
  void createField();
  void run();

  void ping(std::uint32_t serial) { xdg_wm_base_pong(shell_.get(), serial); }
  void configure(std::uint32_t serial);
  void takeCapabilities(std::uint32_t capabilities);
  void takeMap(std::uint32_t format, std::int32_t fd, std::uint32_t size);
  void enter(std::uint32_t serial, wl_surface* surface, wl_array* keys);
  void leave(std::uint32_t serial, wl_surface* surface);
  void takeKey(std::uint32_t serial, std::uint32_t time, std::uint32_t key, std::uint32_t state);
  void takeModifiers(std::uint32_t serial, std::uint32_t depressed, std::uint32_t latched,
                     std::uint32_t locked, std::uint32_t group);
  void enterField(wl_surface* surface);
  void takeText(const char* text);
  void noteEntry(std::uint32_t serial);

  std::optional<Content> content_;
  wayland::Connection connection_;
  Owned<wl_compositor> compositor_;
  Owned<xdg_wm_base> shell_;
  Owned<wl_seat> seat_;
  Owned<wl_surface> surface_;
  Owned<xdg_surface> shellSurface_;
  Owned<xdg_toplevel> toplevel_;
  Owned<wl_buffer> buffer_{nullptr, wl_buffer_destroy};
  Owned<wl_keyboard> keyboard_{nullptr, wl_keyboard_destroy};
  Owned<zwp_text_input_v3> field_{nullptr, zwp_text_input_v3_destroy};
  Owned<wl_callback> taken_{nullptr, wl_callback_destroy};
  wayland::CompiledMap map_;
  std::unique_ptr<xkb_state, void (*)(xkb_state*)> state_{nullptr, xkb_state_unref};
  mutable std::mutex mutex_;
  Shown shown_;
  std::array<int, 2> end_{};
  std::thread thread_;
};

TextWindow::Client::Client(std::optional<Content> content)
    : content_(content),
      compositor_(connection_.bind<wl_compositor>(wl_compositor_interface), wl_compositor_destroy),
      shell_(connection_.bind<xdg_wm_base>(xdg_wm_base_interface), xdg_wm_base_destroy),
      seat_(connection_.bind<wl_seat>(wl_seat_interface), wl_seat_destroy),
      surface_(wl_compositor_create_surface(compositor_.get()), wl_surface_destroy),
      shellSurface_(xdg_wm_base_get_xdg_surface(shell_.get(), surface_.get()), xdg_surface_destroy),
      toplevel_(xdg_surface_get_toplevel(shellSurface_.get()), xdg_toplevel_destroy) {
  static constexpr xdg_wm_base_listener shellListener = {.ping = Calls<&Client::ping>{}};
  static constexpr xdg_surface_listener surfaceListener = {.configure =
                                                               Calls<&Client::configure>{}};
  static constexpr wl_seat_listener seatListener = {
      .capabilities = Calls<&Client::takeCapabilities>{}, .name = Ignores{}};
  static constexpr xdg_toplevel_listener toplevelListener = {.configure = Ignores{},
                                                             .close = Ignores{},
                                                             .configure_bounds = Ignores{},
                                                             .wm_capabilities = Ignores{}};
  xdg_wm_base_add_listener(shell_.get(), &shellListener, this);
  xdg_surface_add_listener(shellSurface_.get(), &surfaceListener, this);
  xdg_toplevel_add_listener(toplevel_.get(), &toplevelListener, this);
  wl_seat_add_listener(seat_.get(), &seatListener, this);
  xdg_toplevel_set_app_id(toplevel_.get(), "org.example.Editor");
  createBuffer();
  if (content_) createField();
  wl_surface_commit(surface_.get());
  if (::pipe2(end_.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  thread_ = std::thread([this] { run(); });
}

TextWindow::Client::~Client() {
  ::close(end_[1]);
  thread_.join();
  ::close(end_[0]);
}

void TextWindow::Client::run() {
  std::array<pollfd, 2> waited = {{{.fd = connection_.fd(), .events = POLLIN, .revents = 0},
                                   {.fd = end_[0], .events = POLLIN, .revents = 0}}};
  while (connection_.dispatch()) {
    connection_.flush();
    ::poll(waited.data(), waited.size(), -1);
    if (waited[1].revents != 0) return;
  }
}

void TextWindow::Client::createBuffer() {
  const Owned<wl_shm> memory(connection_.bind<wl_shm>(wl_shm_interface), wl_shm_destroy);
  const int fd = ::memfd_create("window", MFD_CLOEXEC);
  if (::ftruncate(fd, off_t{stride} * side) != 0)
    throw std::runtime_error("no memory for the window");
  const Owned<wl_shm_pool> pool(wl_shm_create_pool(memory.get(), fd, stride * side),
                                wl_shm_pool_destroy);
  buffer_.reset(
      wl_shm_pool_create_buffer(pool.get(), 0, side, side, stride, WL_SHM_FORMAT_XRGB8888));
  ::close(fd);
}

void TextWindow::Client::createField() {
  static constexpr zwp_text_input_v3_listener listener = {
      .enter = Calls<&Client::enterField>{},
      .leave = Ignores{},
      .preedit_string = Ignores{},
      .commit_string = Calls<&Client::takeText>{},
      .delete_surrounding_text = Ignores{},
      .done = Ignores{}};
  const Owned<zwp_text_input_manager_v3> manager(
      connection_.bind<zwp_text_input_manager_v3>(zwp_text_input_manager_v3_interface),
      zwp_text_input_manager_v3_destroy);
  field_.reset(zwp_text_input_manager_v3_get_text_input(manager.get(), seat_.get()));
  zwp_text_input_v3_add_listener(field_.get(), &listener, this);
}

void TextWindow::Client::configure(std::uint32_t serial) {
  xdg_surface_ack_configure(shellSurface_.get(), serial);
  wl_surface_attach(surface_.get(), buffer_.get(), 0, 0);
  wl_surface_commit(surface_.get());
}

void TextWindow::Client::takeCapabilities(std::uint32_t capabilities) {
  if ((capabilities & WL_SEAT_CAPABILITY_KEYBOARD) == 0 || keyboard_) return;
  static constexpr wl_keyboard_listener listener = {.keymap = Calls<&Client::takeMap>{},
                                                    .enter = Calls<&Client::enter>{},
                                                    .leave = Calls<&Client::leave>{},
                                                    .key = Calls<&Client::takeKey>{},
                                                    .modifiers = Calls<&Client::takeModifiers>{},
                                                    .repeat_info = Ignores{}};
  keyboard_.reset(wl_seat_get_keyboard(seat_.get()));
  wl_keyboard_add_listener(keyboard_.get(), &listener, this);
}

void TextWindow::Client::takeMap(std::uint32_t /*format*/, std::int32_t fd, std::uint32_t size) {
  map_ = wayland::compiledMap(wayland::takeMapText(fd, size));
  state_.reset(xkb_state_new(map_.get()));
}

void TextWindow::Client::enter(std::uint32_t /*serial*/, wl_surface* /*surface*/, wl_array* keys) {
  const std::span codes(static_cast<const std::uint32_t*>(keys->data),
                        keys->size / sizeof(std::uint32_t));
  const std::lock_guard lock(mutex_);
  shown_.hasFocus = true;
  for (const auto code : codes) shown_.down.insert(static_cast<std::uint16_t>(code));
}

void TextWindow::Client::leave(std::uint32_t /*serial*/, wl_surface* /*surface*/) {
  const std::lock_guard lock(mutex_);
  shown_.hasFocus = false;
  shown_.down.clear();
}

void TextWindow::Client::takeKey(std::uint32_t /*serial*/, std::uint32_t /*time*/,
                                 std::uint32_t key, std::uint32_t state) {
  const auto evdev = static_cast<std::uint16_t>(key);
  const auto isDown = state == WL_KEYBOARD_KEY_STATE_PRESSED;
  const std::lock_guard lock(mutex_);
  shown_.keys.push_back({evdev, isDown, std::chrono::steady_clock::now()});
  if (!isDown) {
    shown_.down.erase(evdev);
    return;
  }
  shown_.down.insert(evdev);
  if (xkb_state_key_get_one_sym(state_.get(), xkbCode(key)) == XKB_KEY_BackSpace) {
    removeLastScalar(shown_.text);
    return;
  }
  if (evdev == KEY_ENTER) shown_.text += '\n';
  std::array<char, 8> bytes{};
  xkb_state_key_get_utf8(state_.get(), xkbCode(key), bytes.data(), bytes.size());
  if (static_cast<unsigned char>(bytes[0]) >= 0x20) shown_.text += bytes.data();
}

void TextWindow::Client::takeModifiers(std::uint32_t /*serial*/, std::uint32_t depressed,
                                       std::uint32_t latched, std::uint32_t locked,
                                       std::uint32_t group) {
  xkb_state_update_mask(state_.get(), depressed, latched, locked, 0, 0, group);
}

void TextWindow::Client::enterField(wl_surface* /*surface*/) {
  zwp_text_input_v3_enable(field_.get());
  zwp_text_input_v3_set_content_type(field_.get(), content_->hints, content_->purpose);
  zwp_text_input_v3_commit(field_.get());
  static constexpr wl_callback_listener listener = {.done = Calls<&Client::noteEntry>{}};
  taken_ = connection_.sync();
  wl_callback_add_listener(taken_.get(), &listener, this);
}

void TextWindow::Client::takeText(const char* text) {
  const std::lock_guard lock(mutex_);
  if (text != nullptr) shown_.text += text;
}

void TextWindow::Client::noteEntry(std::uint32_t /*serial*/) {
  const std::lock_guard lock(mutex_);
  ++shown_.fieldEntries;
}

TextWindow::TextWindow(std::optional<Content> content)
    : client_(std::make_unique<Client>(content)) {
  if (!waitFor([this] { return hasFocus(); })) {
    throw std::runtime_error("the window does not get the focus");
  }
}

TextWindow::~TextWindow() = default;

std::string TextWindow::textAfter(const std::string& expected) const {
  auto before = text();
  const auto isThere = [&] { return text() == expected; };
  while (!waitFor(isThere, 2s)) {
    const auto now = text();
    if (now == before) break;
    before = now;
  }
  return text();
}

std::string TextWindow::text() const { return client_->shown().text; }
std::vector<TextWindow::Key> TextWindow::keys() const { return client_->shown().keys; }
bool TextWindow::hasFocus() const { return client_->shown().hasFocus; }
bool TextWindow::isAnyKeyDown() const { return !client_->shown().down.empty(); }
bool TextWindow::isField() const { return client_->isField(); }
int TextWindow::fieldEntries() const { return client_->shown().fieldEntries; }
void TextWindow::clear() { client_->clear(); }

}  // namespace kivra::e2e
