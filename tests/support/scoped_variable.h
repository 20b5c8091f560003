#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace varnelo::test {

// Sets an environment variable of this process and puts it back at the end.
class ScopedVariable {
public:
    ScopedVariable(const char* variable, const std::string& value) : name(variable) {
        if (const char* old = std::getenv(variable)) before = old;
        set(value.c_str());
    }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;
    ~ScopedVariable() { set(before ? before->c_str() : nullptr); }

private:
    void set(const char* value) const {
#ifdef _WIN32
        _putenv_s(name.c_str(), value ? value : "");
#else
        value ? ::setenv(name.c_str(), value, 1) : ::unsetenv(name.c_str());
#endif
    }

    std::string name;
    std::optional<std::string> before;
};

}  // namespace varnelo::test
