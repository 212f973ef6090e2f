#include "support/strict_json.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>

#include "support/utf8_sequence.h"

namespace test_support {
namespace {

bool IsDigit(char character) { return character >= '0' && character <= '9'; }

class Reader {
public:
    explicit Reader(std::string_view document) : text(document) {}

    Json ReadDocument() {
        Json value = ReadValue();
        Require(position == text.size(), "the text goes on after the value");
        return value;
    }

private:
    void Require(bool condition, const char* complaint) const {
        if (!condition) {
            throw std::runtime_error("byte " + std::to_string(position) + ": " + complaint);
        }
    }

    char Peek() const { return position < text.size() ? text[position] : '\0'; }

    char Take() {
        Require(position < text.size(), "the text ends early");
        return text[position++];
    }

    bool TakeIf(char character) {
        if (position >= text.size() || text[position] != character) {
            return false;
        }
        ++position;
        return true;
    }

    Json ReadValue() {
        switch (Peek()) {
            case '{':
                return ReadObject();
            case '[':
                return ReadArray();
            case '"':
                return {Json::Kind::String, ReadString(), {}, {}};
            case 't':
                return ReadLiteral("true");
            case 'f':
                return ReadLiteral("false");
            case 'n':
                return ReadLiteral("null");
            default:
                return ReadNumber();
        }
    }

    Json ReadObject() {
        Json object{Json::Kind::Object, {}, {}, {}};
        Take();
        if (TakeIf('}')) {
            return object;
        }
        do {
            Require(Peek() == '"', "a key is expected");
            std::string key = ReadString();
            Require(std::none_of(object.members.begin(), object.members.end(),
                                 [&](const auto& member) { return member.first == key; }),
                    "the key was there before");
            Require(TakeIf(':'), "a colon is expected");
            object.members.emplace_back(std::move(key), ReadValue());
        } while (TakeIf(','));
        Require(TakeIf('}'), "a comma or the end of the object is expected");
        return object;
    }

    Json ReadArray() {
        Json array{Json::Kind::Array, {}, {}, {}};
        Take();
        if (TakeIf(']')) {
            return array;
        }
        do {
            array.items.push_back(ReadValue());
        } while (TakeIf(','));
        Require(TakeIf(']'), "a comma or the end of the array is expected");
        return array;
    }

    Json ReadLiteral(std::string_view literal) {
        Require(text.substr(position, literal.size()) == literal, "unknown literal");
        position += literal.size();
        return {Json::Kind::Literal, std::string(literal), {}, {}};
    }

    void SkipDigits() {
        Require(IsDigit(Peek()), "a digit is expected");
        while (IsDigit(Peek())) {
            ++position;
        }
    }

    Json ReadNumber() {
        const std::size_t begin = position;
        TakeIf('-');
        if (!TakeIf('0')) {
            SkipDigits();
        }
        if (TakeIf('.')) {
            SkipDigits();
        }
        if (TakeIf('e') || TakeIf('E')) {
            if (!TakeIf('+')) {
                TakeIf('-');
            }
            SkipDigits();
        }
        return {Json::Kind::Number, std::string(text.substr(begin, position - begin)), {}, {}};
    }

    std::string ReadString() {
        std::string result;
        Take();
        while (!TakeIf('"')) {
            if (TakeIf('\\')) {
                result += ReadEscape();
                continue;
            }
            Require(position < text.size(), "the text ends within a string");
            Require(static_cast<unsigned char>(Peek()) >= 0x20, "control character in a string");
            const std::size_t length = Utf8SequenceLength(text.substr(position));
            Require(length != 0, "not UTF-8");
            result += text.substr(position, length);
            position += length;
        }
        return result;
    }

    std::string ReadEscape() {
        const char character = Take();
        if (character == 'u') {
            return Utf8Of(ReadEscapedCodePoint());
        }
        static constexpr std::string_view kEscapes = "\"\\/bfnrt";
        static constexpr std::string_view kCharacters = "\"\\/\b\f\n\r\t";
        const std::size_t index = kEscapes.find(character);
        Require(index != std::string_view::npos, "unknown escape");
        return std::string(1, kCharacters[index]);
    }

    std::uint32_t ReadHexUnit() {
        std::uint32_t unit = 0;
        for (int i = 0; i < 4; ++i) {
            static constexpr std::string_view kDigits = "0123456789abcdef";
            const std::size_t digit = kDigits.find(static_cast<char>(Take() | 0x20));
            Require(digit != std::string_view::npos, "a hex digit is expected");
            unit = unit * 16 + static_cast<std::uint32_t>(digit);
        }
        return unit;
    }

    std::uint32_t ReadEscapedCodePoint() {
        const std::uint32_t unit = ReadHexUnit();
        Require(unit < 0xDC00 || unit > 0xDFFF, "second half of a pair without the first");
        if (unit < 0xD800 || unit > 0xDFFF) {
            return unit;
        }
        Require(TakeIf('\\') && TakeIf('u'), "the second half of a pair is expected");
        const std::uint32_t low = ReadHexUnit();
        Require(low >= 0xDC00 && low <= 0xDFFF, "the second half of a pair is expected");
        return 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
    }

    std::string_view text;
    std::size_t position = 0;
};

}  // namespace

Json ParseCompactJson(std::string_view text) { return Reader(text).ReadDocument(); }

}  // namespace test_support
