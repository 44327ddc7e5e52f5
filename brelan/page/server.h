// The page of a command in a browser of the same machine: its files, and questions that the page asks.
//
// Whoever else uses the machine, and any page of the network that the browser has open, may send requests to
// the same port. So only requests are answered whose path begins with a random token, that name this server
// as their host, and that come from its own page.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "cli/json.h"

namespace brelan::tool {

struct Answer {
    int status = 200;
    std::string type = "application/json; charset=utf-8";
    std::string body;
};

Answer json_answer(const Json& json);

// {"error": one sentence}.
Answer error_answer(int status, std::string_view sentence);

// What is asked of the server by name: "deck" by GET, "check" by POST with a value in JSON. They are called
// by several threads at a time. A Failure that they throw is answered with status 422.
struct PageRoutes {
    std::map<std::string, std::function<Answer()>, std::less<>> questions;
    std::map<std::string, std::function<Answer(const Json&)>, std::less<>> orders;
};

class PageServer {
public:
    // Listens on the loopback address, at a port that is free where it is 0. Throws Failure where it cannot.
    PageServer(PageRoutes routes, int port);
    ~PageServer();
    PageServer(const PageServer&) = delete;
    PageServer& operator=(const PageServer&) = delete;

    // "http://127.0.0.1:PORT/TOKEN/".
    const std::string& address() const;

    // Sends an event to every page that listens at "events".
    void tell(std::string_view event, const Json& data);

    // Ends after the requests that are being answered; the destructor does it too.
    void stop();

private:
    class Listener;
    std::unique_ptr<Listener> listener_;
};

}  // namespace brelan::tool
