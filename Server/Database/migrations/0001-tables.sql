-- Moments are milliseconds since 1970 (UTC), days "YYYY-MM-DD" in the account's time zone, truth values 0 and 1,
-- lists and maps the text of their JSON. A migration that was released is never changed: the next one is.

CREATE TABLE users (
    id TEXT PRIMARY KEY,
    email TEXT NOT NULL UNIQUE,
    display_name TEXT NOT NULL,
    password_hash TEXT NOT NULL,
    time_zone TEXT NOT NULL,
    language TEXT NOT NULL,
    created_at BIGINT NOT NULL
);

CREATE TABLE devices (
    id TEXT PRIMARY KEY,
    user_id TEXT NOT NULL REFERENCES users ON DELETE CASCADE,
    device_name TEXT NOT NULL,
    platform TEXT NOT NULL,
    last_heartbeat_at BIGINT,
    created_at BIGINT NOT NULL,
    updated_at BIGINT NOT NULL
);
CREATE INDEX devices_of_user ON devices (user_id);

-- One for each device that was let in. Ending it ends its tokens.
CREATE TABLE sign_ins (
    id TEXT PRIMARY KEY,
    user_id TEXT NOT NULL REFERENCES users ON DELETE CASCADE,
    device_id TEXT NOT NULL REFERENCES devices ON DELETE CASCADE,
    created_at BIGINT NOT NULL
);
CREATE INDEX sign_ins_of_user ON sign_ins (user_id);
CREATE INDEX sign_ins_of_device ON sign_ins (device_id);

-- Tokens stand here as digests only.
CREATE TABLE access_tokens (
    digest TEXT PRIMARY KEY,
    sign_in_id TEXT NOT NULL REFERENCES sign_ins ON DELETE CASCADE,
    expires_at BIGINT NOT NULL
);
CREATE INDEX access_tokens_of_sign_in ON access_tokens (sign_in_id);

CREATE TABLE refresh_tokens (
    digest TEXT PRIMARY KEY,
    sign_in_id TEXT NOT NULL REFERENCES sign_ins ON DELETE CASCADE,
    expires_at BIGINT NOT NULL,
    rotated_at BIGINT,
    rotation_salt TEXT
);
CREATE INDEX refresh_tokens_of_sign_in ON refresh_tokens (sign_in_id);

CREATE TABLE web_sessions (
    digest TEXT PRIMARY KEY,
    user_id TEXT NOT NULL REFERENCES users ON DELETE CASCADE,
    expires_at BIGINT NOT NULL
);
CREATE INDEX web_sessions_of_user ON web_sessions (user_id);

CREATE TABLE device_codes (
    digest TEXT PRIMARY KEY,
    user_code TEXT NOT NULL UNIQUE,
    status TEXT NOT NULL,
    user_id TEXT REFERENCES users ON DELETE CASCADE,
    address TEXT NOT NULL,
    created_at BIGINT NOT NULL,
    expires_at BIGINT NOT NULL
);
CREATE INDEX device_codes_of_user ON device_codes (user_id);

-- Tries that may not be repeated at will, by whom they concern.
CREATE TABLE attempts (
    id TEXT NOT NULL,
    purpose TEXT NOT NULL,
    subject TEXT NOT NULL,
    made_at BIGINT NOT NULL
);
CREATE INDEX attempts_by_subject ON attempts (purpose, subject, made_at);
CREATE INDEX attempts_by_id ON attempts (id);

CREATE TABLE block_rules (
    id TEXT PRIMARY KEY,
    user_id TEXT NOT NULL REFERENCES users ON DELETE CASCADE,
    category TEXT,
    custom_name TEXT,
    enabled INTEGER NOT NULL,
    custom_domains TEXT NOT NULL,
    excluded_domains TEXT NOT NULL,
    custom_apps TEXT,
    unblock_policy TEXT NOT NULL,
    cooldown_hours BIGINT,
    created_at BIGINT NOT NULL,
    updated_at BIGINT NOT NULL
);
CREATE INDEX block_rules_of_user ON block_rules (user_id);

CREATE TABLE schedules (
    id TEXT PRIMARY KEY,
    user_id TEXT NOT NULL REFERENCES users ON DELETE CASCADE,
    name TEXT NOT NULL,
    schedule_type TEXT NOT NULL,
    days TEXT,
    start_time TEXT,
    end_time TEXT,
    start_date TEXT,
    end_date TEXT,
    timezone TEXT NOT NULL,
    rule_ids TEXT NOT NULL,
    enabled INTEGER NOT NULL,
    created_at BIGINT NOT NULL,
    updated_at BIGINT NOT NULL
);
CREATE INDEX schedules_of_user ON schedules (user_id);

CREATE TABLE sharing_codes (
    code TEXT PRIMARY KEY,
    user_id TEXT NOT NULL UNIQUE REFERENCES users ON DELETE CASCADE,
    created_at BIGINT NOT NULL,
    expires_at BIGINT NOT NULL
);

CREATE TABLE connections (
    id TEXT PRIMARY KEY,
    controller_user_id TEXT NOT NULL REFERENCES users ON DELETE CASCADE,
    controlled_user_id TEXT NOT NULL REFERENCES users ON DELETE CASCADE,
    daily_limit_minutes BIGINT NOT NULL,
    flexibility_mode TEXT NOT NULL,
    custom_block_message TEXT,
    block_illustration_key TEXT,
    created_at BIGINT NOT NULL,
    UNIQUE (controller_user_id, controlled_user_id)
);
CREATE INDEX connections_of_controlled ON connections (controlled_user_id);

CREATE TABLE guardian_rules (
    id TEXT PRIMARY KEY,
    connection_id TEXT NOT NULL REFERENCES connections ON DELETE CASCADE,
    category TEXT,
    custom_name TEXT,
    enabled INTEGER NOT NULL,
    custom_domains TEXT NOT NULL,
    custom_apps TEXT NOT NULL,
    created_at BIGINT NOT NULL,
    updated_at BIGINT NOT NULL
);
CREATE INDEX guardian_rules_of_connection ON guardian_rules (connection_id);

CREATE TABLE activity_events (
    id EVENT_NUMBER,
    connection_id TEXT NOT NULL REFERENCES connections ON DELETE CASCADE,
    actor_user_id TEXT NOT NULL REFERENCES users ON DELETE CASCADE,
    event_type TEXT NOT NULL,
    metadata TEXT NOT NULL,
    created_at BIGINT NOT NULL
);
CREATE INDEX activity_of_connection ON activity_events (connection_id, created_at);
CREATE INDEX activity_of_actor ON activity_events (actor_user_id);

CREATE TABLE tasks (
    id TEXT PRIMARY KEY,
    group_id TEXT,
    assigner_id TEXT NOT NULL REFERENCES users ON DELETE CASCADE,
    assignee_id TEXT NOT NULL REFERENCES users ON DELETE CASCADE,
    title TEXT NOT NULL,
    description TEXT,
    emoji TEXT,
    reward_minutes BIGINT NOT NULL,
    due_date BIGINT,
    repeat_type TEXT NOT NULL,
    requires_proof INTEGER NOT NULL,
    status TEXT NOT NULL,
    proof TEXT,
    starts_at BIGINT NOT NULL,
    completed_at BIGINT,
    approved_at BIGINT,
    approved_by TEXT REFERENCES users ON DELETE SET NULL,
    rejected_reason TEXT,
    created_at BIGINT NOT NULL,
    updated_at BIGINT NOT NULL
);
CREATE INDEX tasks_of_assignee ON tasks (assignee_id);
CREATE INDEX tasks_of_assigner ON tasks (assigner_id);
CREATE INDEX tasks_of_approver ON tasks (approved_by);

-- What a streak and the focus board are made of.
CREATE TABLE active_days (
    user_id TEXT NOT NULL REFERENCES users ON DELETE CASCADE,
    day TEXT NOT NULL,
    has_heartbeat INTEGER NOT NULL,
    has_bypass INTEGER NOT NULL,
    focus_seconds BIGINT NOT NULL,
    PRIMARY KEY (user_id, day)
);

CREATE TABLE usage_reports (
    user_id TEXT NOT NULL REFERENCES users ON DELETE CASCADE,
    device_id TEXT NOT NULL REFERENCES devices ON DELETE CASCADE,
    day TEXT NOT NULL,
    used_minutes BIGINT NOT NULL,
    PRIMARY KEY (user_id, day, device_id)
);
CREATE INDEX usage_reports_of_device ON usage_reports (device_id);

CREATE TABLE daily_screen_time (
    user_id TEXT NOT NULL REFERENCES users ON DELETE CASCADE,
    device_id TEXT NOT NULL REFERENCES devices ON DELETE CASCADE,
    date TEXT NOT NULL,
    total_minutes BIGINT NOT NULL,
    pickup_count BIGINT,
    app_usage TEXT,
    category_totals TEXT,
    created_at BIGINT NOT NULL,
    PRIMARY KEY (user_id, date, device_id)
);
CREATE INDEX daily_screen_time_of_device ON daily_screen_time (device_id);

CREATE TABLE notification_preferences (
    user_id TEXT PRIMARY KEY REFERENCES users ON DELETE CASCADE,
    block_alerts INTEGER NOT NULL,
    streak_reminders INTEGER NOT NULL,
    task_notifications INTEGER NOT NULL,
    daily_summary INTEGER NOT NULL,
    authority_requests INTEGER NOT NULL,
    limit_warnings INTEGER NOT NULL
);

CREATE TABLE push_tokens (
    token TEXT PRIMARY KEY,
    user_id TEXT NOT NULL REFERENCES users ON DELETE CASCADE,
    device_id TEXT REFERENCES devices ON DELETE CASCADE,
    platform TEXT NOT NULL,
    updated_at BIGINT NOT NULL
);
CREATE INDEX push_tokens_of_user ON push_tokens (user_id);
CREATE INDEX push_tokens_of_device ON push_tokens (device_id);

CREATE TABLE task_templates (
    language TEXT NOT NULL,
    position BIGINT NOT NULL,
    emoji TEXT NOT NULL,
    title TEXT NOT NULL,
    description TEXT NOT NULL,
    reward_minutes BIGINT NOT NULL,
    category TEXT NOT NULL,
    PRIMARY KEY (language, position)
);

CREATE TABLE illustrations (
    language TEXT NOT NULL,
    position BIGINT NOT NULL,
    key TEXT NOT NULL,
    name TEXT NOT NULL,
    category TEXT NOT NULL,
    PRIMARY KEY (language, position)
);
