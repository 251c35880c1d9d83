// A text under the tokenizer's cursor, as the scene reader sets it up, and the messages that reading it makes.
#pragma once
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "lib/import/lw/base/tokens.h"
#include "lib/import/lw/lws/keywords.h"
#include "lib/import/lw/lws/scene_parameters.h"
#include "lib/import/lw/lws/tokenizer.h"
#include "lib/services/host.h"

namespace scene_tests {

class TokenizerTest : public testing::Test {
protected:
    // The text's first line is the one under the cursor, number 0.
    void open(std::string_view text)
    {
        close();
        bytes_ = std::make_unique<char[]>(text.size() + 1);
        text.copy(bytes_.get(), text.size());
        lws_fp = text.empty() ? std::fopen("/dev/null", "r") : fmemopen(bytes_.get(), text.size(), "r");
        ASSERT_NE(lws_fp, nullptr);
        lws_buf_io_input_buffer = block_.get();
        input_line_buffer = line_.get();
        token_buffer = token_.get();
        lws_buf_io_chars_in_buffer = lws_buf_io_curr_buffer_offset = 0;
        lws_eof_reached = false;
        last_token_read = KW_ZOOM_FACTOR;
        line_num = 0;
        curr_buf_ptr = input_line_buffer;
        LWS_Buffered_fgets(input_line_buffer, lws_line_size, lws_fp);
    }

    // Every token up to the end of the file, with the number of its line.
    std::vector<std::string> tokens()
    {
        std::vector<std::string> all;
        while (lw_get_next_token()) all.push_back(std::to_string(line_num) + ":" + token_buffer);
        return all;
    }

    std::vector<std::string> tokens(std::string_view text)
    {
        open(text);
        return tokens();
    }

    // The messages so far, and from now on none.
    std::vector<std::string> messages()
    {
        std::vector<std::string> taken;
        taken.swap(messages_);
        return taken;
    }

    void SetUp() override
    {
        lw_look_up_tokens();
        services::Host host;
        host.report = [this](int32_t level, std::string_view text) {
            messages_.push_back(std::to_string(level) + " " + std::string(text));
        };
        services::set_host(std::move(host));
        ASSERT_TRUE(lw_make_scene_params());
    }

    void TearDown() override
    {
        close();
        lw_free_scene_params();
        services::set_host({});
    }

private:
    void close()
    {
        if (lws_fp) std::fclose(lws_fp);
        lws_fp = nullptr;
        lws_buf_io_input_buffer = input_line_buffer = token_buffer = nullptr;
        lws_eof_reached = false;
    }

    // Buffers of just the sizes that the reader asks for, so that a sanitizer sees a byte too many.
    std::unique_ptr<char[]> block_ = std::make_unique<char[]>(lws_block_size);
    std::unique_ptr<char[]> line_ = std::make_unique<char[]>(lws_line_size);
    std::unique_ptr<char[]> token_ = std::make_unique<char[]>(lws_token_size);
    std::unique_ptr<char[]> bytes_;
    std::vector<std::string> messages_;
};

} // namespace scene_tests
