#include "support/person.h"

#include "support/x_input.h"

#include <chrono>

namespace kelp::test {

Person::Person(const std::string &title, std::vector<std::string> steps)
    : mThread([title, steps] {
          const std::string find = "search --onlyvisible --name '^" + title + "$' ";
          auto waitFor = [&](bool present) {
              for (int i = 0; i < 50; ++i) {
                  if (XDoToolQuiet(find) == present)
                      return true;
                  std::this_thread::sleep_for(std::chrono::milliseconds(200));
              }
              return false;
          };
          if (!waitFor(true))
              return;
          std::this_thread::sleep_for(std::chrono::milliseconds(600));
          for (const std::string &step : steps) {
              XDoToolQuiet(find + step);
              std::this_thread::sleep_for(std::chrono::milliseconds(200));
          }
          if (waitFor(false))
              return;
          XDoToolQuiet(find + "key Escape");
          if (!waitFor(false)) // a window that won't go fails the test rather than hang it
              XDoToolQuiet(find + "windowkill");
      }) {}

Person::~Person() { mThread.join(); }

} // namespace kelp::test
