-- The program's tables. Texts compare without case, save addresses, passwords and stored form values.
-- Nothing refers by foreign key: whoever deletes a row deletes what belongs to it.

create table site (
  id integer primary key,
  name text collate nocase,
  upper_limit integer,  -- MB
  lower_limit integer,  -- KB
  pages_to_scan integer,
  files_to_download integer,
  download_path text collate nocase,
  auto_scan text collate nocase,
  domain text collate nocase,
  alternate_matchpath text collate nocase,
  hops integer,
  unique_names text(3) collate nocase,
  base_name text(200) collate nocase
);

create table link (
  id integer primary key,
  site_id integer,
  url text collate binary,
  link_type text collate nocase,
  username text collate nocase,
  password text collate binary,
  status text collate nocase,
  file_type text collate nocase
);
-- The duplicate check of every link found.
create index link_url on link (url);
-- A site's waiting pages and files, which scan and download ask for; all of its links, when they are cleared. One index
-- for all: every further one costs each link found a tenth of its time.
create index link_site_status_type on link (site_id, status, link_type);

create table valid_filetypes (
  id integer primary key autoincrement,
  name text collate nocase,
  description text collate nocase,
  can_delete text collate nocase,
  download_by_default text collate nocase
);
create index valid_filetypes_name on valid_filetypes (name);

create table site_filetype_xref (
  site_id integer,
  file_type_id integer
);
create index site_filetype_xref_site on site_filetype_xref (site_id, file_type_id);

create table site_paths (
  site_id integer,
  filetype_id integer,
  path text collate nocase
);
create index site_paths_site on site_paths (site_id, filetype_id);

create table filter (
  id integer primary key,
  name text collate nocase,
  global text collate nocase,
  description text collate nocase
);

create table site_filter_xref (
  site_id integer,
  filter_id integer
);
create index site_filter_xref_site on site_filter_xref (site_id, filter_id);

create table filter_rule_xref (
  filter_id integer,
  rule_id integer
);
create index filter_rule_xref_filter on filter_rule_xref (filter_id, rule_id);

create table rule (
  id integer primary key,
  valid_rule_type_id integer,
  valid_field_id integer,
  search_value text collate nocase,
  path text collate nocase,
  name text collate nocase,
  operator text collate nocase
);

create table valid_rule (
  id integer primary key,
  name text collate nocase
);

create table valid_field (
  id integer primary key,
  name text collate nocase
);

create table valid_tag (
  id integer primary key autoincrement,
  tag text collate nocase
);

create table valid_sid (
  sid_name text collate nocase primary key,
  next_value integer
);

create table form (
  id integer primary key,
  name text collate nocase,
  description text collate nocase,
  form_type text collate nocase
);

create table field_info (
  id integer primary key,
  form_id integer,
  name text collate nocase,
  logical_number text collate nocase,
  search_string text collate nocase,
  supplied_by_user text collate nocase,
  prompt text collate nocase,
  field_name text collate nocase,
  field_value text collate binary
);
create index field_info_form on field_info (form_id, logical_number);

create table site_form_xref (
  site_id integer,
  form_id integer
);
create index site_form_xref_site on site_form_xref (site_id);

create table site_field_xref (
  id integer primary key autoincrement,
  site_id integer,
  field_id integer,
  field_value text collate binary
);
create index site_field_xref_site on site_field_xref (site_id, field_id);

create table form_def_update (
  name text collate nocase,
  release_date text collate nocase,
  retrieved text collate nocase,
  url text collate nocase
);
create index form_def_update_name on form_def_update (name);

create table help_info (
  id integer,
  subject text collate nocase,
  the_text text collate nocase,
  hide text collate nocase,
  the_topic text collate nocase
);
create index help_info_id on help_info (id);

create table pref (
  auto_scan text collate nocase,
  quit_time integer,  -- hours
  max_connections integer,
  hide_processes text collate nocase,
  auto_update text collate nocase,
  help_server text collate nocase,
  overwrite_existing text collate nocase
);

create table win_pos (
  id integer primary key autoincrement,
  wname text collate nocase,
  wtop integer,
  wleft integer,
  wwidth integer,
  wheight integer
);
create index win_pos_name on win_pos (wname);
