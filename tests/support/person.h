#pragma once
// A person at the screen answering a modal window: from another thread,
// waits for the window of a title, then gives it each step (xdotool
// commands after "search --onlyvisible --name <title>", so %1 is the
// window; one `type` per step, as `type` takes the rest of its line).  A
// window still there after the steps gets Escape, and then is killed, so a
// step that missed fails the test instead of hanging it.  The destructor waits for the
// person to finish.
#include <string>
#include <thread>
#include <vector>

namespace kelp::test {

class Person {
public:
    Person(const std::string &title, std::vector<std::string> steps);
    ~Person();
    Person(const Person &) = delete;
    Person &operator=(const Person &) = delete;

private:
    std::thread mThread;
};

} // namespace kelp::test
