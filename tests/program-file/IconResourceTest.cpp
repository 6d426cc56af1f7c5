// The built program's icon, read from its raw bytes.
#include "res/resource.h"
#include "tests/program-file/ByteReader.h"
#include "tests/program-file/ProgramResources.h"
#include "tests/support/UniqueHandle.h"

namespace
{

using IconResource = Resource;

struct IconImage
{
    WORD id;
    int size;
    std::size_t bytes;
};

constexpr IconImage kBitmaps[] = {
    {1, 16, 1128}, {2, 32, 4264}, {3, 48, 9640}, {4, 64, 16936}, {5, 128, 67624},
};
constexpr IconImage kPng = {6, 256, 21106};

std::vector<IconImage> AllImages()
{
    std::vector<IconImage> images(std::begin(kBitmaps), std::end(kBitmaps));
    images.push_back(kPng);
    return images;
}

std::string GroupEntry(int width, int height, int colours, int reserved, int planes, int bits,
                       std::size_t bytes, int id)
{
    std::ostringstream line;
    line << width << " x " << height << ", colours " << colours << ", reserved " << reserved
         << ", planes " << planes << ", bits " << bits << ", bytes " << bytes << ", icon " << id;
    return line.str();
}

TEST_F(IconResource, GroupListsSixImages)
{
    constexpr WORD kIconDirectory = 1;
    ByteReader reader(m_program.Get(kIconGroupType, IDR_MAINFRAME, kGerman));
    EXPECT_EQ(reader.Read<WORD>(), 0);
    EXPECT_EQ(reader.Read<WORD>(), kIconDirectory);
    const auto count = reader.Read<WORD>();
    Lines entries;
    for (int entry = 0; entry < count; ++entry)
    {
        const auto width = reader.Read<BYTE>();
        const auto height = reader.Read<BYTE>();
        const auto colours = reader.Read<BYTE>();
        const auto reserved = reader.Read<BYTE>();
        const auto planes = reader.Read<WORD>();
        const auto bits = reader.Read<WORD>();
        const auto bytes = reader.Read<DWORD>();
        const auto id = reader.Read<WORD>();
        entries.push_back(GroupEntry(width, height, colours, reserved, planes, bits, bytes, id));
    }
    EXPECT_TRUE(reader.AtEnd());

    Lines expected;
    for (const auto& [id, size, bytes] : AllImages())
    {
        const int side = size % 256; // one byte: 256 is written as 0
        expected.push_back(GroupEntry(side, side, 0, 0, 1, 32, bytes, id));
    }
    EXPECT_EQ(Joined(entries), Joined(expected));
}

TEST_F(IconResource, SmallImagesAreBitmapsWithAlphaAndMask)
{
    for (const auto& [id, size, byteCount] : kBitmaps)
    {
        SCOPED_TRACE(size);
        const Bytes bytes = m_program.Get(kIconType, id, kGerman);
        ASSERT_EQ(bytes.size(), byteCount);
        ByteReader reader(bytes);
        const auto header = reader.Read<BITMAPINFOHEADER>();
        EXPECT_EQ(header.biSize, 40u);
        EXPECT_EQ(header.biWidth, size);
        EXPECT_EQ(header.biHeight, 2 * size); // colours and mask
        EXPECT_EQ(header.biPlanes, 1);
        EXPECT_EQ(header.biBitCount, 32);
        EXPECT_EQ(header.biCompression, static_cast<DWORD>(BI_RGB));
        EXPECT_EQ(header.biClrUsed, 0u);

        const auto side = static_cast<std::size_t>(size);
        const Bytes pixels = reader.ReadBytes(side * side * 4);
        const std::size_t maskStride = (side + 31) / 32 * 4;
        const Bytes mask = reader.ReadBytes(side * maskStride);
        EXPECT_TRUE(reader.AtEnd());

        std::size_t opaque = 0;
        std::size_t transparent = 0;
        std::size_t maskDiffers = 0;
        for (std::size_t row = 0; row < side; ++row)
        {
            for (std::size_t column = 0; column < side; ++column)
            {
                const int alpha = std::to_integer<int>(pixels[(row * side + column) * 4 + 3]);
                const int masks = std::to_integer<int>(mask[row * maskStride + column / 8]);
                const bool masked = (masks >> (7 - column % 8) & 1) != 0;
                opaque += alpha == 255;
                transparent += alpha == 0;
                maskDiffers += masked != (alpha < 128);
            }
        }
        EXPECT_GT(opaque, side * side / 4);
        EXPECT_GT(transparent, side * side / 8);
        EXPECT_EQ(maskDiffers, 0u);
    }
}

std::uint32_t BigEndian(Bytes bytes)
{
    std::uint32_t value = 0;
    for (const std::byte byte : bytes)
    {
        value = value << 8 | std::to_integer<std::uint32_t>(byte);
    }
    return value;
}

std::uint32_t Crc32(Bytes bytes)
{
    std::uint32_t crc = ~0u;
    for (const std::byte byte : bytes)
    {
        crc ^= std::to_integer<std::uint32_t>(byte);
        for (int bit = 0; bit < 8; ++bit)
        {
            crc = crc >> 1 ^ ((crc & 1) != 0 ? 0xEDB88320 : 0);
        }
    }
    return ~crc;
}

struct PngChunk
{
    std::string kind;
    Bytes content;
};

std::vector<PngChunk> ReadPngChunks(Bytes bytes)
{
    constexpr std::uint64_t kSignature = 0x0A1A0A0D474E5089; // as little-endian number
    ByteReader reader(bytes);
    EXPECT_EQ(reader.Read<std::uint64_t>(), kSignature);
    std::vector<PngChunk> chunks;
    while (!reader.AtEnd())
    {
        const std::uint32_t length = BigEndian(reader.ReadBytes(4));
        const Bytes checked = bytes.subspan(reader.Position(), 4 + std::size_t{length});
        const Bytes kind = reader.ReadBytes(4);
        const Bytes content = reader.ReadBytes(length);
        chunks.push_back({{reinterpret_cast<const char*>(kind.data()), kind.size()}, content});
        EXPECT_EQ(BigEndian(reader.ReadBytes(4)), Crc32(checked)) << chunks.back().kind;
    }
    return chunks;
}

TEST_F(IconResource, LargestImageIsAPng)
{
    const Bytes bytes = m_program.Get(kIconType, kPng.id, kGerman);
    ASSERT_EQ(bytes.size(), kPng.bytes);
    const std::vector<PngChunk> chunks = ReadPngChunks(bytes);

    Lines kinds;
    for (const PngChunk& chunk : chunks)
    {
        kinds.push_back(chunk.kind);
    }
    EXPECT_EQ(kinds, (Lines{"IHDR", "tEXt", "IDAT", "IEND"}));

    constexpr std::byte kBitsPerChannel{8};
    constexpr std::byte kRedGreenBlueAlpha{6};
    const Bytes header = chunks.at(0).content;
    ASSERT_EQ(header.size(), 13u);
    EXPECT_EQ(BigEndian(header.subspan(0, 4)), 256u);
    EXPECT_EQ(BigEndian(header.subspan(4, 4)), 256u);
    EXPECT_EQ(header[8], kBitsPerChannel);
    EXPECT_EQ(header[9], kRedGreenBlueAlpha);
    EXPECT_EQ(header[10], std::byte{0}); // compression: deflate
    EXPECT_EQ(header[11], std::byte{0}); // filter method: the one there is
    EXPECT_EQ(header[12], std::byte{0}); // not interlaced
}

TEST_F(IconResource, PlatformMakesAnIconOfEveryImage)
{
    constexpr DWORD kIconFormat = 0x00030000;
    for (const auto& [id, size, byteCount] : AllImages())
    {
        SCOPED_TRACE(size);
        const Bytes bytes = m_program.Get(kIconType, id, kGerman);
        const UniqueHandle<HICON, &::DestroyIcon> icon(::CreateIconFromResourceEx(
            reinterpret_cast<BYTE*>(const_cast<std::byte*>(bytes.data())),
            static_cast<DWORD>(bytes.size()), TRUE, kIconFormat, size, size, 0));
        EXPECT_NE(icon, nullptr);
    }
}

} // namespace
