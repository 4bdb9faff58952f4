/* Everything the library offers. */
#ifndef AAADOM_AAADOM_H
#define AAADOM_AAADOM_H

#include <aaadom/accounting_policy.h>
#include <aaadom/accounting_policy_codec.h>
#include <aaadom/channel.h>
#include <aaadom/cmd_author_fail.h>
#include <aaadom/codes.h>
#include <aaadom/database.h>
#include <aaadom/db_layout.h>
#include <aaadom/diagnostics.h>
#include <aaadom/domain.h>
#include <aaadom/domain_codec.h>
#include <aaadom/domain_table.h>
#include <aaadom/management.h>
#include <aaadom/method_codec.h>
#include <aaadom/method_list.h>
#include <aaadom/nas_id.h>
#include <aaadom/nas_id_codec.h>
#include <aaadom/profile.h>
#include <aaadom/profile_codec.h>
#include <aaadom/record_codec.h>
#include <aaadom/record_run_db.h>
#include <aaadom/record_switches.h>
#include <aaadom/recording_policy.h>
#include <aaadom/restore.h>
#include <aaadom/results.h>
#include <aaadom/rows.h>
#include <aaadom/service.h>
#include <aaadom/session.h>
#include <aaadom/settings.h>
#include <aaadom/settings_codec.h>
#include <aaadom/types.h>
#include <aaadom/user_record.h>
#include <aaadom/user_record_query.h>

#endif
