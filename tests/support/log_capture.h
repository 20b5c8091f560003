#pragma once

#include <string>
#include <vector>

#include "app/logger.h"

namespace varnelo {

// The lines that are logged during the life of the object, without their time: "[INFO] text".
class LogCapture {
public:
    LogCapture() : begin(Logger::instance().lines().size()) {}

    std::vector<std::wstring> lines() const {
        std::vector<std::wstring> result;
        const std::vector<std::wstring> all = Logger::instance().lines();
        for (std::size_t i = begin; i < all.size(); ++i) {
            const std::size_t bracket = all[i].find(L'[');
            result.push_back(bracket == std::wstring::npos ? all[i] : all[i].substr(bracket));
        }
        return result;
    }

private:
    std::size_t begin;
};

}  // namespace varnelo
