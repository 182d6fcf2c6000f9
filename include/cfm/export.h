/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * Marks what the shared library exports.
 */
#ifndef CFM_EXPORT_H
#define CFM_EXPORT_H

/** Visible outside the shared library, and part of its binary interface. */
#define CFM_API __attribute__((visibility("default")))

#endif
