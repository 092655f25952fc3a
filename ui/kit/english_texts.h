// The texts of the program.
#pragma once

#include "platform/translator.h"

namespace norvane {

/// English texts as they are; translations are looked up here once there are any.
class EnglishTexts final : public Translator {
public:
    [[nodiscard]] std::string translate(std::string_view englishText) const override {
        return std::string(englishText);
    }
};

} // namespace norvane
