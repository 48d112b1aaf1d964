// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/recording/decoder/recording_decoder.h"

#include "platform/speech/speech_input.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <utility>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/channel_layout.h>
#include <libavutil/opt.h>
#include <libswresample/swresample.h>
}

namespace velun {

namespace {

/// Seconds. A difference between the file's clock and the samples below this is no gap.
constexpr double kMinGap = 0.1;
/// Seconds. What a file may lack of the length that it tells.
constexpr double kMinMissing = 2;
/// Seconds. A longer gap is a mistake in the file's times.
constexpr double kMaxGap = 3600;
/// Samples of silence that are returned at once.
constexpr std::int64_t kSilencePiece = kSpeechSampleRate;

template <auto release>
struct Release {
  template <class T>
  void operator()(T* object) const {
    release(&object);
  }
};
using Format = std::unique_ptr<AVFormatContext, Release<avformat_close_input>>;
using Codec = std::unique_ptr<AVCodecContext, Release<avcodec_free_context>>;
using Packet = std::unique_ptr<AVPacket, Release<av_packet_free>>;
using Frame = std::unique_ptr<AVFrame, Release<av_frame_free>>;
using Resampler = std::unique_ptr<SwrContext, Release<swr_free>>;

RecordingFault faultOf(int error) {
  switch (error) {
    case AVERROR(ENOENT):
      return RecordingFault::notFound;
    case AVERROR(EACCES):
    case AVERROR(EPERM):
      return RecordingFault::noPermission;
    case AVERROR(EIO):
    case AVERROR(EISDIR):
    // A socket, which has to be read through a pipe.
    case AVERROR(ENXIO):
      return RecordingFault::unreadable;
    default:
      return RecordingFault::notRecording;
  }
}

void require(bool holds, RecordingFault fault) {
  if (!holds) throw DecodeFailure{fault};
}

Format open(const std::string& path) {
  AVDictionary* options = nullptr;
  // A playlist must not make the program fetch anything.
  av_dict_set(&options, "protocol_whitelist", "file", 0);
  AVFormatContext* format = nullptr;
  const int error = avformat_open_input(&format, ("file:" + path).c_str(), nullptr, &options);
  av_dict_free(&options);
  if (error < 0) throw DecodeFailure{faultOf(error)};
  Format opened(format);
  require(avformat_find_stream_info(format, nullptr) >= 0, RecordingFault::notRecording);
  return opened;
}

}  // namespace

class RecordingDecoder::Ffmpeg {
 public:
  explicit Ffmpeg(const std::string& path)
      : format_(open(path)), packet_(av_packet_alloc()), frame_(av_frame_alloc()) {
    const int index = av_find_best_stream(format_.get(), AVMEDIA_TYPE_AUDIO, -1, -1, nullptr, 0);
    require(index >= 0, RecordingFault::noSound);
    for (unsigned i = 0; i < format_->nb_streams; ++i) {
      if (static_cast<int>(i) != index) format_->streams[i]->discard = AVDISCARD_ALL;
    }
    stream_ = format_->streams[index];
    const AVCodec* codec = avcodec_find_decoder(stream_->codecpar->codec_id);
    require(codec, RecordingFault::unknownCodec);
    codec_.reset(avcodec_alloc_context3(codec));
    require(codec_ && avcodec_parameters_to_context(codec_.get(), stream_->codecpar) >= 0 &&
                avcodec_open2(codec_.get(), codec, nullptr) >= 0,
            RecordingFault::unknownCodec);
  }

  std::optional<double> duration() const {
    if (format_->duration == AV_NOPTS_VALUE || format_->duration < 0) return std::nullopt;
    return static_cast<double>(format_->duration) / AV_TIME_BASE;
  }

  /// Formats call most damage the end of the file, so that what the file says of its length counts.
  bool isBrokenOff() const {
    if (readError_ == AVERROR(EIO)) return true;
    const double seconds = static_cast<double>(decoded_) / kSpeechSampleRate;
    return declaredSeconds().value_or(0) - seconds > kMinMissing;
  }

  std::vector<float> next() {
    while (true) {
      if (silence_ > 0) return silencePiece();
      if (!waiting_.empty()) return std::exchange(waiting_, {});
      if (hasEnded_) return {};
      if (!readFrame()) {
        hasEnded_ = true;
        waiting_ = resampled(nullptr);
      } else {
        measureGap();
        waiting_ = resampled(frame_.get());
        decoded_ += static_cast<std::int64_t>(waiting_.size());
        av_frame_unref(frame_.get());
      }
    }
  }

 private:
  /// The next frame of sound. False at the end of the file, which a damaged one may have early.
  bool readFrame() {
    while (true) {
      const int received = avcodec_receive_frame(codec_.get(), frame_.get());
      if (received == 0) return true;
      if (received == AVERROR_EOF) return false;
      if (isFlushing_) return false;
      readError_ = readPacket();
      if (readError_ < 0) {
        isFlushing_ = true;
        avcodec_send_packet(codec_.get(), nullptr);
        continue;
      }
      // A packet that cannot be decoded is left out; its time becomes a gap.
      if (packet_->stream_index == stream_->index) {
        avcodec_send_packet(codec_.get(), packet_.get());
      }
      av_packet_unref(packet_.get());
    }
  }

  /// Zero, or an error, of which AVERROR_EOF is the end.
  int readPacket() {
    const int error = av_read_frame(format_.get(), packet_.get());
    const int disk = format_->pb ? format_->pb->error : 0;
    return error < 0 && disk == AVERROR(EIO) ? disk : error;
  }

  /// The length of the sound by the file's own account; nullopt if it has none, or is a stream,
  /// whose header was written before its end was known.
  std::optional<double> declaredSeconds() const {
    const bool isFile = format_->pb && (format_->pb->seekable & AVIO_SEEKABLE_NORMAL);
    if (!isFile || format_->duration_estimation_method == AVFMT_DURATION_FROM_BITRATE) return {};
    if (stream_->duration != AV_NOPTS_VALUE) {
      return static_cast<double>(stream_->duration) * av_q2d(stream_->time_base);
    }
    // Of a file with pictures, which may be longer than its sound, this is no account of the sound.
    return format_->nb_streams == 1 ? duration() : std::nullopt;
  }

  void measureGap() {
    if (frame_->best_effort_timestamp == AV_NOPTS_VALUE) return;
    const double start = format_->start_time == AV_NOPTS_VALUE
                             ? 0
                             : static_cast<double>(format_->start_time) / AV_TIME_BASE;
    const double time =
        static_cast<double>(frame_->best_effort_timestamp) * av_q2d(stream_->time_base) - start;
    const double gap = time - static_cast<double>(decoded_) / kSpeechSampleRate;
    if (gap < kMinGap || gap > kMaxGap) return;
    silence_ = std::llround(gap * kSpeechSampleRate);
    decoded_ += silence_;
  }

  std::vector<float> silencePiece() {
    const std::int64_t count = std::min(silence_, kSilencePiece);
    silence_ -= count;
    return std::vector<float>(static_cast<std::size_t>(count));
  }

  /// Null gets the last samples out of the resampler.
  std::vector<float> resampled(const AVFrame* frame) {
    if (frame && !prepareResampler(*frame)) return {};
    if (!resampler_) return {};
    const int in = frame ? frame->nb_samples : 0;
    const int room = swr_get_out_samples(resampler_.get(), in);
    if (room <= 0) return {};
    std::vector<float> samples(static_cast<std::size_t>(room));
    auto* out = reinterpret_cast<std::uint8_t*>(samples.data());
    const int count =
        swr_convert(resampler_.get(), &out, room,
                    frame ? const_cast<const std::uint8_t**>(frame->extended_data) : nullptr, in);
    samples.resize(static_cast<std::size_t>(std::max(count, 0)));
    for (float& sample : samples)
      sample = std::isfinite(sample) ? std::clamp(sample, -1.F, 1.F) : 0;
    return samples;
  }

  /// The form of the sound may change in the middle of a file. False if it cannot be converted.
  bool prepareResampler(const AVFrame& frame) {
    const bool isSame = resampler_ && frame.format == sampleFormat_ && frame.sample_rate == rate_ &&
                        frame.ch_layout.nb_channels == channels_;
    if (isSame) return true;
    AVChannelLayout mono = AV_CHANNEL_LAYOUT_MONO;
    AVChannelLayout layout = frame.ch_layout;
    if (layout.order == AV_CHANNEL_ORDER_UNSPEC) {
      av_channel_layout_default(&layout, layout.nb_channels);
    }
    SwrContext* context = nullptr;
    resampler_.reset();
    if (swr_alloc_set_opts2(&context, &mono, AV_SAMPLE_FMT_FLT, kSpeechSampleRate, &layout,
                            static_cast<AVSampleFormat>(frame.format), frame.sample_rate, 0,
                            nullptr) < 0) {
      return false;
    }
    resampler_.reset(context);
    if (swr_init(context) < 0) {
      resampler_.reset();
      return false;
    }
    sampleFormat_ = frame.format;
    rate_ = frame.sample_rate;
    channels_ = frame.ch_layout.nb_channels;
    return true;
  }

  Format format_;
  Codec codec_;
  Packet packet_;
  Frame frame_;
  Resampler resampler_;
  AVStream* stream_ = nullptr;
  int sampleFormat_ = -1;
  int rate_ = 0;
  int channels_ = 0;
  int readError_ = 0;
  bool isFlushing_ = false;
  bool hasEnded_ = false;
  std::int64_t decoded_ = 0;  ///< samples that were returned or wait, silence included
  std::int64_t silence_ = 0;  ///< samples that come before those that wait
  std::vector<float> waiting_;
};

RecordingDecoder::RecordingDecoder(const std::string& path)
    : ffmpeg_(std::make_unique<Ffmpeg>(path)) {}

RecordingDecoder::~RecordingDecoder() = default;

std::optional<double> RecordingDecoder::duration() const {
  return ffmpeg_->duration();
}

std::vector<float> RecordingDecoder::next() {
  return ffmpeg_->next();
}

bool RecordingDecoder::isBrokenOff() const {
  return ffmpeg_->isBrokenOff();
}

}  // namespace velun
