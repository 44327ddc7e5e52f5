#include "study/workers.h"

#include <fmt/core.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <exception>
#include <vector>

#include "cli/exit_status.h"

namespace brelan::tool {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int LONGEST_WAIT = 200;  // milliseconds until `goes_on` is asked again

// Reads or writes one number; false when the other side is gone.
bool receive(int channel, std::size_t& number) {
    ssize_t count = 0;
    do
        count = read(channel, &number, sizeof number);
    while (count < 0 && errno == EINTR);
    return count == static_cast<ssize_t>(sizeof number);
}

bool dispatch(int channel, std::size_t number) {
    ssize_t count = 0;
    do
        count = send(channel, &number, sizeof number, MSG_NOSIGNAL);
    while (count < 0 && errno == EINTR);
    return count == static_cast<ssize_t>(sizeof number);
}

class Worker {
public:
    Worker(const WorkerPlan& plan, const std::vector<int>& other_channels) {
        int ends[2];
        if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
            throw Failure(fmt::format("no worker can be started: {}", std::strerror(errno)));
        const pid_t parent = getpid();
        process_ = fork();
        if (process_ < 0) {
            close(ends[0]);
            close(ends[1]);
            throw Failure(fmt::format("no worker can be started: {}", std::strerror(errno)));
        }
        if (process_ == 0) {
            close(ends[0]);
            for (const int channel : other_channels)
                close(channel);
            be_worker(plan, ends[1], parent);
        }
        close(ends[1]);
        channel_ = ends[0];
    }

    ~Worker() {
        if (process_ > 0)
            end();
    }
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    int channel() const { return channel_; }
    bool busy() const { return number_ > 0; }
    std::size_t number() const { return number_; }
    double seconds() const { return std::chrono::duration<double>(Clock::now() - begun_).count(); }

    void give(std::size_t number) {
        number_ = number;
        begun_ = Clock::now();
        dispatch(channel_, number);  // a worker that is gone is found when it is listened to
    }

    // True when it has done its case; false when it is gone.
    bool listen() {
        std::size_t number = 0;
        const bool done = receive(channel_, number) && number == number_;
        if (done)
            number_ = 0;
        return done;
    }

    // The signal that ended the process; 0 for none.
    int end() {
        kill(process_, SIGKILL);
        int status = 0;
        while (waitpid(process_, &status, 0) < 0 && errno == EINTR) {
        }
        close(channel_);
        process_ = 0;
        return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    }

    // The signal that it has ended itself with, before it is ended.
    int own_end() {
        int status = 0;
        while (waitpid(process_, &status, 0) < 0 && errno == EINTR) {
        }
        close(channel_);
        process_ = 0;
        return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    }

private:
    [[noreturn]] static void be_worker(const WorkerPlan& plan, int channel, pid_t parent) {
        // The parent ends its workers; a Ctrl-C at the terminal comes to all of them.
        for (const int number : {SIGINT, SIGTERM, SIGHUP})
            signal(number, SIG_IGN);
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        std::size_t number = 0;
        try {
            while (getppid() == parent && receive(channel, number)) {
                plan.work(number);
                if (!dispatch(channel, number))
                    break;
            }
        } catch (...) {
            _exit(STATUS_BAD);
        }
        _exit(STATUS_OK);
    }

    pid_t process_ = 0;
    int channel_ = -1;
    std::size_t number_ = 0;
    Clock::time_point begun_{};
};

class Crew {
public:
    explicit Crew(const WorkerPlan& plan) : plan_(plan) {}

    void run() {
        while (plan_.goes_on()) {
            give_work();
            if (std::none_of(workers_.begin(), workers_.end(), [](const auto& w) { return w->busy(); }))
                return;
            listen(wait());
        }
    }

private:
    void give_work() {
        while (!all_given_) {
            const auto idle =
                std::find_if(workers_.begin(), workers_.end(), [](const auto& w) { return !w->busy(); });
            if (idle == workers_.end() && workers_.size() >= std::max(1U, plan_.count))
                return;
            const std::optional<std::size_t> number = plan_.next();
            if (!number) {
                all_given_ = true;
                return;
            }
            if (idle == workers_.end()) {
                std::vector<int> channels;
                for (const auto& worker : workers_)
                    channels.push_back(worker->channel());
                workers_.push_back(std::make_unique<Worker>(plan_, channels));
                workers_.back()->give(*number);
            } else {
                (*idle)->give(*number);
            }
        }
    }

    std::vector<pollfd> wait() const {
        std::vector<pollfd> channels;
        double patience = LONGEST_WAIT;
        for (const auto& worker : workers_) {
            channels.push_back({worker->channel(), POLLIN, 0});
            if (plan_.time_limit > 0.0 && worker->busy())
                patience = std::min(patience, 1000.0 * (plan_.time_limit - worker->seconds()) + 1.0);
        }
        if (poll(channels.data(), channels.size(), static_cast<int>(std::max(0.0, patience))) < 0)
            for (pollfd& channel : channels)
                channel.revents = 0;
        return channels;
    }

    void listen(const std::vector<pollfd>& channels) {
        for (std::size_t k = channels.size(); k-- > 0;) {
            Worker& worker = *workers_[k];
            CaseEnd end{worker.number(), CaseEnd::How::done, 0, worker.seconds()};
            if (channels[k].revents != 0) {
                if (!worker.listen()) {
                    end.how = CaseEnd::How::crashed;
                    end.signal = worker.own_end();
                }
            } else if (worker.busy() && plan_.time_limit > 0.0 && end.seconds > plan_.time_limit) {
                end.how = CaseEnd::How::time_limit;
                worker.end();
            } else {
                continue;
            }
            if (end.how != CaseEnd::How::done)
                workers_.erase(workers_.begin() + static_cast<std::ptrdiff_t>(k));
            if (end.number > 0)
                plan_.ended(end);
        }
    }

    const WorkerPlan& plan_;
    std::vector<std::unique_ptr<Worker>> workers_;
    bool all_given_ = false;
};

}  // namespace

void run_workers(const WorkerPlan& plan) {
    Crew(plan).run();
}

}  // namespace brelan::tool
