#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <span>
#include <stdexcept>
#include <string>
#include <type_traits>

/// Reads little-endian binary data from front to back. Does not own the data. Every operation that
/// would leave the data throws std::out_of_range, which fails the test that reads.
class ByteReader
{
public:
    explicit ByteReader(std::span<const std::byte> data) : m_data(data) {}

    template <typename Value>
    Value Read()
    {
        static_assert(std::is_trivially_copyable_v<Value>);
        Value value;
        std::memcpy(&value, ReadBytes(sizeof value).data(), sizeof value);
        return value;
    }

    std::span<const std::byte> ReadBytes(std::size_t count)
    {
        if (count > m_data.size() - m_position)
        {
            throw std::out_of_range("read past the end of binary data");
        }
        const auto bytes = m_data.subspan(m_position, count);
        m_position += count;
        return bytes;
    }

    /// UTF-16 code units up to a terminating zero, which is read too.
    std::wstring ReadText()
    {
        std::wstring text;
        while (const auto unit = Read<wchar_t>())
        {
            text += unit;
        }
        return text;
    }

    /// Skips to the next 32-bit boundary; at the end of the data there may be none.
    void Align() { ReadBytes(std::min((4 - m_position % 4) % 4, m_data.size() - m_position)); }

    std::size_t Position() const { return m_position; }
    bool AtEnd() const { return m_position == m_data.size(); }

private:
    std::span<const std::byte> m_data;
    std::size_t m_position = 0;
};
