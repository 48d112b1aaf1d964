// SPDX-License-Identifier: GPL-3.0-or-later
// Loaded into a program before the library of Wayland. Once the file that VELUN_STUCK names exists,
// the thread that reads from the compositor never comes back: it reports that by writing into the
// file. The main thread can still wait for replies.
#include <cstdlib>
#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>
#include <wayland-client-core.h>

extern "C" int wl_display_read_events(wl_display* display) {
  static const auto read =
      reinterpret_cast<int (*)(wl_display*)>(dlsym(RTLD_NEXT, "wl_display_read_events"));
  const char* path = gettid() == getpid() ? nullptr : std::getenv("VELUN_STUCK");
  const int file = path ? open(path, O_WRONLY | O_CLOEXEC) : -1;
  if (file < 0) return read(display);
  wl_display_cancel_read(display);
  if (write(file, "stuck", 5) != 5) std::abort();
  close(file);
  for (;;) pause();
}
