// A package as the text of its file.
#pragma once

#include <uci.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace cwmp {

class Export {
  public:
    Export(uci_context* context, uci_package* package) {
        std::FILE* stream = open_memstream(&text_, &size_);
        if (stream == nullptr) return;
        // Without this buffer libuci would write what it cannot escape as it is.
        if (context->buf == nullptr && (context->buf = static_cast<char*>(std::malloc(kBuffer))) != nullptr)
            context->bufsz = kBuffer;
        const bool exported = context->buf != nullptr && uci_export(context, stream, package, false) == UCI_OK &&
                              std::ferror(stream) == 0;
        // Its last allocation may fail as the stream is closed, which fclose does not tell.
        whole_ = std::fclose(stream) == 0 && exported && text_ != nullptr;
    }
    ~Export() { std::free(text_); }
    Export(const Export&) = delete;
    Export& operator=(const Export&) = delete;

    explicit operator bool() const { return whole_; }
    std::string_view text() const { return {text_, size_}; }

  private:
    static constexpr int kBuffer = 64;

    char* text_ = nullptr;
    std::size_t size_ = 0;
    bool whole_ = false;
};

}  // namespace cwmp
