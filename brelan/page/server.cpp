#include "page/server.h"

#include <fmt/core.h>
#include <httplib.h>
#include <sys/random.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cctype>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <list>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#include "cli/exit_status.h"
#include "page/embedded_files.h"

namespace brelan::tool {

namespace {

using httplib::Request;
using httplib::Response;

constexpr const char* LOOPBACK = "127.0.0.1";
constexpr std::size_t LARGEST_BODY = 8U << 20U;  // bytes
constexpr std::size_t MOST_CONNECTIONS = 64;     // answered at a time
constexpr std::size_t MOST_LISTENERS = 16;       // pages that are told of events
constexpr int REQUEST_SECONDS = 5;               // between two bytes of a request
constexpr int IDLE_SECONDS = 2;          // between two requests of a connection; so late may the end come
constexpr int STILL_THERE_SECONDS = 10;  // between two signs of life where there are no events

const httplib::Headers& headers_of_all_answers() {
    static const httplib::Headers headers{
        {"Content-Security-Policy",
         "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' data: blob:; "
         "connect-src 'self'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'"},
        {"X-Content-Type-Options", "nosniff"},
        {"Referrer-Policy", "no-referrer"},
        {"Cache-Control", "no-store"},
        {"Cross-Origin-Opener-Policy", "same-origin"},
        {"Cross-Origin-Resource-Policy", "same-origin"}};
    return headers;
}

// 128 random bits.
std::string random_token() {
    std::array<unsigned char, 16> bytes{};
    if (getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size()))
        throw Failure("the system gives no random numbers");
    std::string token;
    for (const unsigned char byte : bytes)
        token += fmt::format("{:02x}", byte);
    return token;
}

// In a time that does not tell how many characters are right.
bool same_text(std::string_view given, std::string_view expected) {
    if (given.size() != expected.size())
        return false;
    unsigned difference = 0;
    for (std::size_t k = 0; k < given.size(); ++k)
        difference |= static_cast<unsigned char>(given[k]) ^ static_cast<unsigned char>(expected[k]);
    return difference == 0;
}

const char* type_of(std::string_view name) {
    if (name.ends_with(".html"))
        return "text/html; charset=utf-8";
    if (name.ends_with(".css"))
        return "text/css; charset=utf-8";
    // The library would compress any "text/" with each request, which takes a second for the editor's script.
    if (name.ends_with(".js"))
        return "application/javascript; charset=utf-8";
    return "application/octet-stream";
}

// The header's only value; none where it is not there or stands there more than once.
std::optional<std::string> only(const Request& request, const char* header) {
    if (request.get_header_value_count(header) != 1)
        return std::nullopt;
    return request.get_header_value(header);
}

void set(Response& response, Answer answer) {
    response.status = answer.status;
    response.headers.erase("Content-Type");
    response.set_header("Content-Type", answer.type);
    response.body = std::move(answer.body);
}

}  // namespace

Answer json_answer(const Json& json) {
    return {200, Answer().type, json.compact()};
}

Answer error_answer(int status, std::string_view sentence) {
    Answer answer = json_answer({{"error", sentence}});
    answer.status = status;
    return answer;
}

class PageServer::Listener {
public:
    Listener(PageRoutes routes, int port) : routes_(std::move(routes)), token_(random_token()) {
        server_.set_address_family(AF_INET);
        // Not SO_REUSEPORT, by which another process would take a part of what is sent to this one.
        server_.set_socket_options([](socket_t socket) {
            const int on = 1;
            setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
        });
        server_.set_tcp_nodelay(true);  // an answer is not held back until its head is acknowledged
        server_.set_payload_max_length(LARGEST_BODY);
        server_.set_read_timeout(REQUEST_SECONDS);
        server_.set_keep_alive_timeout(IDLE_SECONDS);
        server_.set_keep_alive_max_count(100'000);
        server_.new_task_queue = [] { return new httplib::ThreadPool(MOST_CONNECTIONS); };
        server_.set_default_headers(headers_of_all_answers());
        server_.set_pre_routing_handler([this](const Request& request, Response& response) {
            std::optional<Answer> refusal = refused(request);
            if (!refusal)
                return httplib::Server::HandlerResponse::Unhandled;
            set(response, std::move(*refusal));
            // What was sent besides has not been read: nobody may take it for the next request.
            response.set_header("Connection", "close");
            return httplib::Server::HandlerResponse::Handled;
        });
        server_.set_error_handler([](const Request&, Response& response) {
            if (response.body.empty() && !response.has_header("Content-Type"))
                set(response, error_answer(response.status, sentence_of(response.status)));
        });
        server_.set_exception_handler([](const Request&, Response& response, std::exception_ptr thrown) {
            try {
                std::rethrow_exception(std::move(thrown));
            } catch (const Failure& failure) {
                set(response, error_answer(422, failure.what()));
            } catch (const std::exception& error) {
                set(response, error_answer(500, error.what()));
            }
        });
        add_routes();
        const bool bound = port == 0 ? (port = server_.bind_to_any_port(LOOPBACK)) > 0
                                     : server_.bind_to_port(LOOPBACK, port);
        if (!bound)
            throw Failure(port > 0 ? fmt::format("port {}: cannot be listened at; it may be taken", port)
                                   : "no port can be listened at");
        hosts_ = {fmt::format("{}:{}", LOOPBACK, port), fmt::format("localhost:{}", port)};
        address_ = fmt::format("http://{}/{}/", hosts_[0], token_);
        thread_ = std::thread([this] {
            server_.listen_after_bind();
            ended_ = true;
        });
    }

    ~Listener() {
        stop();
        thread_.join();
    }

    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    const std::string& address() const { return address_; }

    void tell(std::string_view event, const Json& data) {
        const std::scoped_lock lock(mutex_);
        for (Waiting& waiting : waiting_)
            waiting.texts.push_back(fmt::format("event: {}\ndata: {}\n\n", event, data.compact()));
        told_.notify_all();
    }

    void stop() {
        {
            const std::scoped_lock lock(mutex_);
            stopped_ = true;
            told_.notify_all();
        }
        // A server that does not run yet would not take notice.
        while (!server_.is_running() && !ended_)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        server_.stop();
    }

private:
    // A page that is told of events, and what it has not been told yet.
    struct Waiting {
        std::deque<std::string> texts;
        bool gone = false;
    };

    static std::string_view sentence_of(int status) {
        switch (status) {
            case 413:
                return "more is sent than a deck can have";
            case 404:
                return "there is nothing of this name";
            default:
                return "the request is not understood";
        }
    }

    // What is asked before anything of the request's body is read.
    std::optional<Answer> refused(const Request& request) const {
        const std::string_view path = request.path;
        const std::size_t end = path.find('/', 1);
        if (end == std::string_view::npos || !same_text(path.substr(1, end - 1), token_))
            return Answer{404, "text/plain", ""};
        const std::optional<std::string> host = only(request, "Host");
        if (!host || std::find(hosts_.begin(), hosts_.end(), *host) == hosts_.end())
            return error_answer(403, "the request is for another host");
        const bool from_page = request.has_header("Origin") && is_own(only(request, "Origin"));
        if (request.has_header("Origin") && !from_page)
            return error_answer(403, "the request comes from another page");
        if (request.has_header("Range"))
            return Answer{400, "text/plain", ""};  // of an error parts would be given as well
        const bool sends = request.has_header("Content-Length") || request.has_header("Transfer-Encoding");
        if (request.method == "GET")
            return sends ? std::optional(error_answer(400, "a question has no body")) : std::nullopt;
        if (request.method != "POST")
            return error_answer(405, "only GET and POST are answered");
        if (!from_page)
            return error_answer(403, "the request does not say which page it comes from");
        const std::optional<std::string> type = only(request, "Content-Type");
        if (!type || (*type != "application/json" && *type != "application/json; charset=utf-8" &&
                      *type != "application/json;charset=UTF-8"))
            return error_answer(415, "expected application/json");
        // Neither has a length that is known before it is unpacked.
        if (request.has_header("Transfer-Encoding") || request.has_header("Content-Encoding"))
            return error_answer(415, "expected a body as it is");
        return refused_length(only(request, "Content-Length"));
    }

    // A body that is a little too large is read before it is refused, so that the page gets the answer.
    static std::optional<Answer> refused_length(const std::optional<std::string>& length) {
        if (!length || length->empty() || length->find_first_not_of("0123456789") != std::string::npos)
            return error_answer(411, "expected the length of the body");
        constexpr std::size_t DIGITS = 8;
        if (length->size() > DIGITS)
            return error_answer(413, sentence_of(413));
        return std::nullopt;
    }

    bool is_own(const std::optional<std::string>& origin) const {
        return origin && std::any_of(hosts_.begin(), hosts_.end(),
                                     [&](const std::string& host) { return *origin == "http://" + host; });
    }

    void add_routes() {
        const std::string root = "/" + token_ + "/";
        for (const EmbeddedFile& file : embedded_files()) {
            const std::string name(file.name == "page.html" ? "" : file.name);
            server_.Get(exactly(root + name), [file](const Request&, Response& response) {
                set(response, {200, type_of(file.name), std::string(file.text)});
            });
        }
        for (const auto& [name, ask] : routes_.questions)
            server_.Get(exactly(root + name),
                        [&ask = ask](const Request&, Response& response) { set(response, ask()); });
        for (const auto& [name, order] : routes_.orders)
            server_.Post(exactly(root + name), [&order = order](const Request& request, Response& response) {
                set(response, order(Json::parsed(request.body)));
            });
        server_.Get(exactly(root + "events"),
                    [this](const Request&, Response& response) { add_listener(response); });
    }

    // A pattern that only this text fits.
    static std::string exactly(const std::string& text) {
        std::string pattern;
        for (const char c : text)
            pattern += (std::isalnum(static_cast<unsigned char>(c)) != 0 ? "" : "\\") + std::string(1, c);
        return pattern;
    }

    void add_listener(Response& response) {
        const std::scoped_lock lock(mutex_);
        waiting_.remove_if([](const Waiting& waiting) { return waiting.gone; });
        if (waiting_.size() == MOST_LISTENERS) {
            set(response, error_answer(503, "too many pages are open"));
            return;
        }
        Waiting& waiting = waiting_.emplace_back();
        waiting.texts.emplace_back("event: hello\ndata: {}\n\n");
        response.set_chunked_content_provider(
            "text/event-stream",
            [this, &waiting](std::size_t, httplib::DataSink& sink) { return send_events(waiting, sink); },
            [this, &waiting](bool) {
                const std::scoped_lock ending(mutex_);
                waiting.gone = true;
            });
    }

    bool send_events(Waiting& waiting, httplib::DataSink& sink) {
        std::unique_lock lock(mutex_);
        told_.wait_for(lock, std::chrono::seconds(STILL_THERE_SECONDS),
                       [&] { return stopped_ || !waiting.texts.empty(); });
        if (stopped_) {
            sink.done();
            return true;
        }
        std::string text = ": still there\n\n";
        if (!waiting.texts.empty()) {
            text = std::move(waiting.texts.front());
            waiting.texts.pop_front();
        }
        lock.unlock();
        return sink.write(text.data(), text.size());
    }

    const PageRoutes routes_;
    const std::string token_;
    std::array<std::string, 2> hosts_;
    std::string address_;

    std::mutex mutex_;  // for what stands below
    std::condition_variable told_;
    std::list<Waiting> waiting_;
    bool stopped_ = false;

    std::atomic<bool> ended_ = false;
    httplib::Server server_;
    std::thread thread_;
};

PageServer::PageServer(PageRoutes routes, int port)
    : listener_(std::make_unique<Listener>(std::move(routes), port)) {}

PageServer::~PageServer() = default;

const std::string& PageServer::address() const {
    return listener_->address();
}

void PageServer::tell(std::string_view event, const Json& data) {
    listener_->tell(event, data);
}

void PageServer::stop() {
    listener_->stop();
}

}  // namespace brelan::tool
