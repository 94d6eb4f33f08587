#include "win32/views/Picture.h"

#include <objbase.h>
// Behind objbase.h, whose types it uses.
#include <wincodec.h>

#include <algorithm>
#include <memory>
#include <utility>

#include "win32/machine/Com.h"
#include "win32/machine/WidePath.h"
#include "win32/machine/Win32File.h"

namespace marlok::win32 {

namespace {

// What no picture of the program comes near; it keeps a damaged one from taking all memory.
constexpr int maxSide = 4096;
constexpr UINT maxFrames = 1000;
constexpr std::size_t maxPixels = std::size_t{32} * 1024 * 1024;
constexpr std::size_t maxFileSize = std::size_t{64} * 1024 * 1024;

// Many animations ask for no pause at all and mean the pace that viewers have always given them.
constexpr std::uint32_t leastDelay = 20;
constexpr std::uint32_t usualDelay = 100;

/// What becomes of a frame's area before the next frame is drawn.
enum Disposal : unsigned { clearIt = 2, restoreIt = 3 };

/// Where a frame lies on the canvas and how it is shown.
struct FramePlace {
    int left = 0;
    int top = 0;
    unsigned disposal = 0;
    std::uint32_t delay = 0;
};

/// A property of a metadata reader.
class Property {
 public:
    Property() { PropVariantInit(&value_); }
    Property(const Property&) = delete;
    Property& operator=(const Property&) = delete;
    ~Property() { PropVariantClear(&value_); }

    [[nodiscard]] PROPVARIANT* Receive() { return &value_; }

    /// 0 for what is no small number.
    [[nodiscard]] unsigned Number() const {
        switch (value_.vt) {
            case VT_UI1:
                return value_.bVal;
            case VT_UI2:
                return value_.uiVal;
            default:
                return 0;
        }
    }

 private:
    PROPVARIANT value_{};
};

/// 0 when the picture does not say.
unsigned Metadata(IWICMetadataQueryReader* reader, const wchar_t* name) {
    Property property;
    if (reader == nullptr || FAILED(reader->GetMetadataByName(name, property.Receive()))) {
        return 0;
    }
    return property.Number();
}

FramePlace PlaceOf(IWICBitmapFrameDecode& frame) {
    ComPtr<IWICMetadataQueryReader> reader;
    if (FAILED(frame.GetMetadataQueryReader(reader.Receive()))) {
        reader.Reset();  // a frame that says nothing lies in the corner
    }
    FramePlace place;
    place.left = static_cast<int>(Metadata(reader.Get(), L"/imgdesc/Left"));
    place.top = static_cast<int>(Metadata(reader.Get(), L"/imgdesc/Top"));
    place.disposal = Metadata(reader.Get(), L"/grctlext/Disposal");
    const std::uint32_t delay = Metadata(reader.Get(), L"/grctlext/Delay") * 10U;
    place.delay = delay < leastDelay ? usualDelay : delay;
    return place;
}

ComPtr<IWICImagingFactory> MakeFactory() {
    ComPtr<IWICImagingFactory> factory;
    if (FAILED(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IWICImagingFactory),
                                factory.ReceiveVoid()))) {
        factory.Reset();
    }
    return factory;
}

/// False when the source cannot be read or is too large.
bool ReadPixels(IWICImagingFactory& factory, IWICBitmapSource& source, Bitmap& bitmap) {
    UINT width = 0;
    UINT height = 0;
    if (FAILED(source.GetSize(&width, &height)) || width == 0 || height == 0 || width > maxSide || height > maxSide) {
        return false;
    }
    ComPtr<IWICFormatConverter> converter;
    if (FAILED(factory.CreateFormatConverter(converter.Receive())) ||
        FAILED(converter->Initialize(&source, GUID_WICPixelFormat32bppPBGRA, WICBitmapDitherTypeNone, nullptr, 0,
                                     WICBitmapPaletteTypeCustom))) {
        return false;
    }
    bitmap = Bitmap(static_cast<int>(width), static_cast<int>(height));
    const auto bytes = static_cast<UINT>(bitmap.pixels.size() * sizeof(std::uint32_t));
    return SUCCEEDED(converter->CopyPixels(nullptr, width * static_cast<UINT>(sizeof(std::uint32_t)), bytes,
                                           reinterpret_cast<BYTE*>(bitmap.pixels.data())));
}

/// Draws the frames of an animation onto each other.
class Animation {
 public:
    Animation(IWICImagingFactory& factory, IWICBitmapDecoder& decoder) : factory_(factory), decoder_(decoder) {
        ComPtr<IWICMetadataQueryReader> reader;
        if (SUCCEEDED(decoder.GetMetadataQueryReader(reader.Receive()))) {
            screen_ = {static_cast<int>(Metadata(reader.Get(), L"/logscrdesc/Width")),
                       static_cast<int>(Metadata(reader.Get(), L"/logscrdesc/Height"))};
        }
    }

    /// Nothing when any frame is damaged: half an animation would only look like a fault of the program.
    [[nodiscard]] std::vector<Picture::Frame> Frames() {
        UINT count = 0;
        if (FAILED(decoder_.GetFrameCount(&count)) || count > maxFrames) {
            return {};
        }
        std::vector<Picture::Frame> frames;
        for (UINT index = 0; index < count; ++index) {
            if (!Draw(index, frames)) {
                return {};
            }
        }
        return frames;
    }

 private:
    bool Draw(UINT index, std::vector<Picture::Frame>& frames) {
        ComPtr<IWICBitmapFrameDecode> source;
        Bitmap part;
        if (FAILED(decoder_.GetFrame(index, source.Receive())) || !ReadPixels(factory_, *source.Get(), part)) {
            return false;
        }
        const FramePlace place = PlaceOf(*source.Get());
        if (index == 0 && !MakeCanvas(part, place)) {
            return false;
        }
        if ((frames.size() + 1) * canvas_.pixels.size() > maxPixels) {
            return false;
        }
        const Bitmap before = place.disposal == restoreIt ? canvas_ : Bitmap();
        DrawOver(canvas_, part, place.left, place.top);
        frames.push_back({canvas_, place.delay});
        if (place.disposal == clearIt) {
            ClearArea(canvas_, place.left, place.top, {part.width, part.height});
        } else if (place.disposal == restoreIt) {
            canvas_ = before;
        }
        return true;
    }

    /// A picture that does not say how large its screen is takes the room of its first frame.
    bool MakeCanvas(const Bitmap& first, const FramePlace& place) {
        const int width = screen_.width > 0 ? screen_.width : place.left + first.width;
        const int height = screen_.height > 0 ? screen_.height : place.top + first.height;
        if (width > maxSide || height > maxSide) {
            return false;
        }
        canvas_ = Bitmap(width, height);
        return true;
    }

    IWICImagingFactory& factory_;
    IWICBitmapDecoder& decoder_;
    PixelSize screen_;
    Bitmap canvas_;
};

std::vector<Picture::Frame> StillFrame(IWICImagingFactory& factory, IWICBitmapSource& source) {
    Bitmap bitmap;
    if (!ReadPixels(factory, source, bitmap)) {
        return {};
    }
    return {{std::move(bitmap), usualDelay}};
}

std::vector<Picture::Frame> Decode(IWICImagingFactory& factory, IWICBitmapDecoder& decoder) {
    GUID format{};
    if (SUCCEEDED(decoder.GetContainerFormat(&format)) && IsEqualGUID(format, GUID_ContainerFormatGif)) {
        return Animation(factory, decoder).Frames();
    }
    ComPtr<IWICBitmapFrameDecode> frame;
    if (FAILED(decoder.GetFrame(0, frame.Receive()))) {
        return {};
    }
    return StillFrame(factory, *frame.Get());
}

/// "" for a file that cannot be read or is too large.
std::string Contents(const std::string& path) {
    std::wstring wide;
    std::unique_ptr<File> file;
    if (ToWidePath(path, wide) != error::success || Win32File::Open(wide, OpenMode::read, file) != error::success) {
        return "";
    }
    std::string all;
    std::string bytes;
    constexpr std::size_t step = 65536;
    do {
        if (file->Read(bytes, step) != error::success || all.size() + bytes.size() > maxFileSize) {
            return "";
        }
        all += bytes;
    } while (!bytes.empty());
    return all;
}

}  // namespace

Picture Picture::FromFile(const std::string& path) {
    return FromBytes(Contents(path));
}

Picture Picture::FromBytes(std::string_view bytes) {
    Picture picture;
    const ComPtr<IWICImagingFactory> factory = MakeFactory();
    if (!factory || bytes.empty() || bytes.size() > maxFileSize) {
        return picture;
    }
    // The stream reads from a copy: it asks for memory that it may write to.
    std::vector<BYTE> copy(bytes.begin(), bytes.end());
    ComPtr<IWICStream> stream;
    ComPtr<IWICBitmapDecoder> decoder;
    if (SUCCEEDED(factory->CreateStream(stream.Receive())) &&
        SUCCEEDED(stream->InitializeFromMemory(copy.data(), static_cast<DWORD>(copy.size()))) &&
        SUCCEEDED(factory->CreateDecoderFromStream(stream.Get(), nullptr, WICDecodeMetadataCacheOnDemand,
                                                   decoder.Receive()))) {
        picture.frames_ = Decode(*factory.Get(), *decoder.Get());
    }
    return picture;
}

Picture Picture::FromIcon(HICON icon) {
    Picture picture;
    const ComPtr<IWICImagingFactory> factory = MakeFactory();
    ComPtr<IWICBitmap> bitmap;
    if (factory && SUCCEEDED(factory->CreateBitmapFromHICON(icon, bitmap.Receive()))) {
        picture.frames_ = StillFrame(*factory.Get(), *bitmap.Get());
    }
    return picture;
}

}  // namespace marlok::win32
