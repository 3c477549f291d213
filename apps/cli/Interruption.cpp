#include "apps/cli/Interruption.h"

#include <csignal>
#include <cstdlib>

namespace hv::cli {
namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t g_caught = 0;

extern "C" void NoteSignal(int number) { g_caught = number; }

}  // namespace

void Interruption::Watch() {
  for (const int number : kSignals) {
    struct sigaction old {};
    if (sigaction(number, nullptr, &old) != 0 || old.sa_handler != SIG_DFL) continue;
    struct sigaction action {};
    action.sa_handler = NoteSignal;
    action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
    sigemptyset(&action.sa_mask);
    sigaction(number, &action, nullptr);
  }
}

int Interruption::Caught() { return g_caught; }

void Interruption::EndByIt() {
  const int number = g_caught;
  std::signal(number, SIG_DFL);
  std::raise(number);
  std::_Exit(128 + number);  // the signal is blocked
}

}  // namespace hv::cli
