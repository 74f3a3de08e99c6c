// The JACK server as it is now there, watched through a client that lives as long as it.
#pragma once

#include <jack/jack.h>

#include <atomic>
#include <memory>

namespace zum {

/// [main] Stands for a client: a new server must not be looked for while those of the one before
/// are still open, or closing them crashes inside of the library.
class JackStay {
 public:
  JackStay() { ++all; }
  ~JackStay() { --all; }
  JackStay(const JackStay&) = delete;
  JackStay& operator=(const JackStay&) = delete;
  static int count() { return all; }

 private:
  inline static int all = 0;
};

struct CloseJackClient {
  void operator()(jack_client_t* client) const { jack_client_close(client); }
};
using JackClient = std::unique_ptr<jack_client_t, CloseJackClient>;
/// Null where there is no server; none is started.
JackClient openJackClient(const char* name);

/// [main] Each client that comes or goes costs the server a new order of all of them, so whoever
/// looks again and again looks here.
class JackServer {
 public:
  static JackServer& get();

  /// Of the one that answers now; null for none, and as long as somebody stays with one that went.
  /// It is never active.
  jack_client_t* client();
  /// The last one went: time for all to go that was opened at it.
  bool isLost() const { return open != nullptr && isGone.load(); }
  /// How many of them there were: another number is another server, for which nothing that was
  /// opened before is of any use. Up to date behind client().
  int number() const { return count; }

 private:
  std::atomic<bool> isGone{false};
  int count = 0;
  JackClient open;  // first to go: it tells of its end
};

}  // namespace zum
