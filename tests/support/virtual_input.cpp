// SPDX-License-Identifier: GPL-3.0-or-later
// A pointer and a keyboard for wlroots compositors and KWin, without a device. Does what the lines
// of the standard input say, and answers each with a line when the compositor has handled it:
//   to X Y | by X Y | press | release | press right | release right | key CODE | disable NUMBER
// The last one switches an output off (KWin only).
// The arguments are the width and the height of all outputs together. Codes are the kernel's.

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fake-input-client.h>
#include <iostream>
#include <kde-output-device-v2-client.h>
#include <kde-output-management-v2-client.h>
#include <sstream>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>
#include <virtual-keyboard-client.h>
#include <virtual-pointer-client.h>
#include <wayland-client.h>

namespace {

constexpr std::uint32_t kLeft = 0x110;
constexpr std::uint32_t kRight = 0x111;
constexpr std::uint32_t kFakeInputVersion = 4;
constexpr char kKeymap[] =
    "xkb_keymap {"
    " xkb_keycodes { include \"evdev+aliases(qwerty)\" };"
    " xkb_types { include \"complete\" };"
    " xkb_compat { include \"complete\" };"
    " xkb_symbols { include \"pc+us+inet(evdev)+compose(ralt)\" };"
    "};";

std::uint32_t now() {
  const auto time = std::chrono::steady_clock::now().time_since_epoch();
  return static_cast<std::uint32_t>(time / std::chrono::milliseconds(1));
}

/// What the compositor offers: KWin one of them, others the other two.
struct Compositor {
  wl_seat* seat = nullptr;
  zwlr_virtual_pointer_manager_v1* pointers = nullptr;
  zwp_virtual_keyboard_manager_v1* keyboards = nullptr;
  org_kde_kwin_fake_input* fake = nullptr;
  kde_output_management_v2* outputManager = nullptr;
  std::vector<kde_output_device_v2*> outputs;
};

template <class T>
bool bindNamed(T*& object, std::string_view name, const wl_interface& interface,
               wl_registry* registry, std::uint32_t number, std::uint32_t version) {
  if (name != interface.name) return false;
  object = static_cast<T*>(wl_registry_bind(registry, number, &interface, version));
  return true;
}

void announced(void* data, wl_registry* registry, std::uint32_t number, const char* name,
               std::uint32_t version) {
  auto& found = *static_cast<Compositor*>(data);
  bindNamed(found.seat, name, wl_seat_interface, registry, number, 1);
  bindNamed(found.pointers, name, zwlr_virtual_pointer_manager_v1_interface, registry, number, 1);
  bindNamed(found.keyboards, name, zwp_virtual_keyboard_manager_v1_interface, registry, number, 1);
  bindNamed(found.fake, name, org_kde_kwin_fake_input_interface, registry, number,
            std::min(version, kFakeInputVersion));
  bindNamed(found.outputManager, name, kde_output_management_v2_interface, registry, number, 1);
  kde_output_device_v2* output = nullptr;
  if (bindNamed(output, name, kde_output_device_v2_interface, registry, number, 1)) {
    found.outputs.push_back(output);
  }
}

/// Works the devices of wlroots.
class WlrootsInput {
 public:
  WlrootsInput(const Compositor& compositor, std::uint32_t width, std::uint32_t height)
      : width_(width),
        height_(height),
        pointer_(zwlr_virtual_pointer_manager_v1_create_virtual_pointer(compositor.pointers,
                                                                        compositor.seat)),
        keyboard_(zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(compositor.keyboards,
                                                                          compositor.seat)) {
    const int file = memfd_create("keymap", MFD_CLOEXEC);
    if (write(file, kKeymap, sizeof kKeymap) != ssize_t(sizeof kKeymap)) std::abort();
    zwp_virtual_keyboard_v1_keymap(keyboard_, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file,
                                   sizeof kKeymap);
    close(file);
  }

  void moveTo(double x, double y) {
    zwlr_virtual_pointer_v1_motion_absolute(pointer_, now(), std::uint32_t(x), std::uint32_t(y),
                                            width_, height_);
    zwlr_virtual_pointer_v1_frame(pointer_);
  }
  void moveBy(double x, double y) {
    zwlr_virtual_pointer_v1_motion(pointer_, now(), wl_fixed_from_double(x),
                                   wl_fixed_from_double(y));
    zwlr_virtual_pointer_v1_frame(pointer_);
  }
  void button(std::uint32_t button, bool isDown) {
    zwlr_virtual_pointer_v1_button(pointer_, now(), button, isDown);
    zwlr_virtual_pointer_v1_frame(pointer_);
  }
  void disable(std::size_t) { std::abort(); }
  void key(std::uint32_t code, bool isDown) {
    zwp_virtual_keyboard_v1_key(keyboard_, now(), code, isDown);
  }

 private:
  std::uint32_t width_;
  std::uint32_t height_;
  zwlr_virtual_pointer_v1* pointer_;
  zwp_virtual_keyboard_v1* keyboard_;
};

/// Works the devices of KWin.
class KWinInput {
 public:
  explicit KWinInput(const Compositor& compositor)
      : fake_(compositor.fake), compositor_(compositor) {
    org_kde_kwin_fake_input_authenticate(fake_, "velun", "test");
  }

  void moveTo(double x, double y) {
    org_kde_kwin_fake_input_pointer_motion_absolute(fake_, wl_fixed_from_double(x),
                                                    wl_fixed_from_double(y));
  }
  void moveBy(double x, double y) {
    org_kde_kwin_fake_input_pointer_motion(fake_, wl_fixed_from_double(x), wl_fixed_from_double(y));
  }
  void button(std::uint32_t button, bool isDown) {
    org_kde_kwin_fake_input_button(fake_, button, isDown);
  }
  void key(std::uint32_t code, bool isDown) {
    org_kde_kwin_fake_input_keyboard_key(fake_, code, isDown);
  }
  void disable(std::size_t number) {
    kde_output_configuration_v2* configuration =
        kde_output_management_v2_create_configuration(compositor_.outputManager);
    kde_output_configuration_v2_enable(configuration, compositor_.outputs.at(number - 1), 0);
    kde_output_configuration_v2_apply(configuration);
  }

 private:
  org_kde_kwin_fake_input* fake_;
  const Compositor& compositor_;
};

/// Returns false for a line that is not understood.
template <class Input>
bool handle(Input& input, const std::string& line) {
  std::istringstream words(line);
  std::string verb;
  words >> verb;
  if (verb == "to" || verb == "by") {
    double x = 0;
    double y = 0;
    words >> x >> y;
    verb == "to" ? input.moveTo(x, y) : input.moveBy(x, y);
  } else if (verb == "press" || verb == "release") {
    std::string which;
    words >> which;
    input.button(which == "right" ? kRight : kLeft, verb == "press");
  } else if (verb == "key") {
    std::uint32_t code = 0;
    words >> code;
    for (const bool isDown : {true, false}) input.key(code, isDown);
  } else if (verb == "disable") {
    std::size_t number = 0;
    words >> number;
    input.disable(number);
  } else {
    return false;
  }
  return true;
}

template <class Input>
int serve(Input input, wl_display* display) {
  wl_display_roundtrip(display);
  std::puts("ready");
  std::fflush(stdout);
  for (std::string line; std::getline(std::cin, line);) {
    if (!handle(input, line)) return EXIT_FAILURE;
    if (wl_display_roundtrip(display) < 0) return EXIT_FAILURE;
    std::puts("done");
    std::fflush(stdout);
  }
  return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
  wl_display* display = wl_display_connect(nullptr);
  if (!display || argc != 3) return EXIT_FAILURE;
  Compositor compositor;
  static const wl_registry_listener listener = {announced, [](void*, wl_registry*, std::uint32_t) {
                                                }};
  wl_registry_add_listener(wl_display_get_registry(display), &listener, &compositor);
  wl_display_roundtrip(display);
  if (compositor.fake) return serve(KWinInput(compositor), display);
  if (!compositor.pointers || !compositor.keyboards) return EXIT_FAILURE;
  const auto size = [argv](int i) {
    return static_cast<std::uint32_t>(std::atoi(argv[i]));
  };
  return serve(WlrootsInput(compositor, size(1), size(2)), display);
}
