#include "util/MacUtils.h"

namespace palisor {

bool MacUtils::writeFileWithContent_path_name_ext_encoding(
    const platform::Platform& services, std::string_view content, const std::string& path,
    const std::string& name, const std::string& ext, platform::TextEncoding encoding) {
    const auto bytes = services.textCodec.encoded(content, encoding);
    return bytes && services.files.makeFolder(path) &&
           services.files.write(path + "/" + name + "." + ext, *bytes);
}

// Every byte is a character of this encoding, so that the file holds what the base64 text said.
std::optional<std::string> MacUtils::fromBase64ToImageFile(const platform::Platform& services,
                                                           std::string_view base64) {
    constexpr auto everyByte = platform::TextEncoding::macRoman;
    const auto folder = getPathGenerico(services);
    const auto text =
        services.textCodec.decoded(services.textCodec.base64Decoded(base64), everyByte);
    if (!folder || !text ||
        !writeFileWithContent_path_name_ext_encoding(services, *text, *folder, "tempimage", "jpg",
                                                     everyByte))
        return std::nullopt;
    return *folder + "/tempimage.jpg";
}

} // namespace palisor
