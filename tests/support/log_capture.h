#pragma once

#include <string>
#include <vector>

#include "app/logger.h"

namespace varnelo {

// The lines that are logged during the life of the object, without their time: "[INFO] text".
class LogCapture {
public:
    LogCapture() : begin(Logger::instance().lineCount()) {}

    std::vector<std::wstring> lines() const {
        std::vector<std::wstring> result;
        for (const std::wstring& line : Logger::instance().lines(begin)) {
            const std::size_t bracket = line.find(L'[');
            result.push_back(bracket == std::wstring::npos ? line : line.substr(bracket));
        }
        return result;
    }

private:
    std::size_t begin;
};

}  // namespace varnelo
