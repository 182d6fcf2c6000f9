// SPDX-License-Identifier: Apache-2.0
#include "core/delay_measurement_records.h"

#include "core/numbers.h"

namespace cfm::core {

DelayMeasurementSessionResult SessionResult(
    const client_server::OpDelayMeasurementSessionEnded& message) {
  DelayMeasurementSessionResult result;
  result.s_word_1 = message.s_word_1();
  result.s_word_2 = message.s_word_2();
  result.s_byte = Low8(message.s_byte());
  result.s_word_3 = message.s_word_3();
  result.s_wide_1 = message.s_wide_1();
  result.s_wide_2 = message.s_wide_2();
  result.s_word_4 = message.s_word_4();
  result.s_real_1 = message.s_real_1();
  result.s_real_2 = message.s_real_2();
  result.s_word_5 = message.s_word_5();
  result.s_word_6 = message.s_word_6();
  result.s_word_7 = message.s_word_7();
  result.s_word_8 = message.s_word_8();
  result.s_word_9 = message.s_word_9();
  result.s_word_10 = message.s_word_10();
  result.s_real_3 = message.s_real_3();
  result.s_real_4 = message.s_real_4();
  return result;
}

}  // namespace cfm::core
