// A forked child that reports one byte back through a pipe, for tests that need a second
// process. The child never returns into the test framework: it ends with _exit.
#pragma once

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>

namespace zt4test {

class ChildProcess {
public:
    // Runs `body` in a child; its result (0 to 255) is written to the pipe, then `after` runs.
    ChildProcess(const std::function<int()>& body, const std::function<void()>& after = {}) {
        if (pipe(pipe_) != 0) return;
        pid_ = fork();
        if (pid_ == 0) {
            close(pipe_[0]);
            const unsigned char result = static_cast<unsigned char>(body());
            ssize_t written = write(pipe_[1], &result, 1);
            if (after) after();
            _exit(written == 1 ? 0 : 3);
        }
        close(pipe_[1]);
        pipe_[1] = -1;
    }
    ~ChildProcess() {
        if (pid_ > 0) {
            kill(pid_, SIGKILL);
            waitpid(pid_, nullptr, 0);
        }
        if (pipe_[0] >= 0) close(pipe_[0]);
    }
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    bool started() const { return pid_ > 0; }

    // The child's result if it reports within `timeoutMs`, else -1.
    int report(int timeoutMs) {
        struct pollfd readable = {pipe_[0], POLLIN, 0};
        if (poll(&readable, 1, timeoutMs) != 1) return -1;
        unsigned char result = 0;
        return read(pipe_[0], &result, 1) == 1 ? result : -1;
    }

    // Waits for the child to end; its exit status, or -1 when it was killed.
    int wait() {
        int status = 0;
        if (pid_ <= 0 || waitpid(pid_, &status, 0) != pid_) return -1;
        pid_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

private:
    pid_t pid_ = -1;
    int pipe_[2] = {-1, -1};
};

// Generous bound for something that must happen; short window for something that must not.
constexpr int kMustHappenMs = 5000;
constexpr int kMustNotHappenMs = 150;

}  // namespace zt4test
