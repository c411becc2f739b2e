-- What a new database holds.

insert into pref (auto_scan, quit_time, max_connections, hide_processes, auto_update, help_server, overwrite_existing)
  values ('no', 8, 3, 'no', 'no', 'no', 'no');

-- Link 1 stands for a site's start location, which has no row; the first forms and fields are built in.
insert into valid_sid (sid_name, next_value) values
  ('site_id', 1),
  ('filter_id', 1),
  ('rule_id', 1),
  ('form_id', 100),
  ('field_info_id', 100),
  ('link_id', 2),
  ('tag_id', 1),
  ('filename_id', 1);

-- Where the windows of the first start stand, in twips.
insert into win_pos (wname, wtop, wleft, wwidth, wheight) values
  ('Morvane2000', 600, 900, 16500, 11250),
  ('Web Sites', 0, 0, 11400, 4500);

insert into valid_rule (id, name) values (1, 'Ignore'), (2, 'Save To');
insert into valid_field (id, name) values (1, 'Link'), (2, 'Domain'), (3, 'Filetype');

insert into valid_filetypes (name, description, can_delete, download_by_default) values
  ('jpg', 'JPEG picture', 'no', 'yes'),
  ('jpeg', 'JPEG picture', 'no', 'yes'),
  ('gif', 'GIF picture', 'no', 'yes'),
  ('png', 'PNG picture', 'no', 'yes'),
  ('bmp', 'Bitmap picture', 'no', 'yes'),
  ('webp', 'WebP picture', 'no', 'yes'),
  ('tif', 'TIFF picture', 'no', 'yes'),
  ('tiff', 'TIFF picture', 'no', 'yes'),
  ('svg', 'Vector picture', 'no', 'no'),
  ('ico', 'Icon', 'no', 'no'),
  ('mp3', 'MP3 sound', 'no', 'no'),
  ('ogg', 'Ogg sound', 'no', 'no'),
  ('flac', 'Lossless sound', 'no', 'no'),
  ('wav', 'Wave sound', 'no', 'no'),
  ('m4a', 'MPEG-4 sound', 'no', 'no'),
  ('mid', 'MIDI music', 'no', 'no'),
  ('mp4', 'MPEG-4 film', 'no', 'no'),
  ('mpg', 'MPEG film', 'no', 'no'),
  ('mpeg', 'MPEG film', 'no', 'no'),
  ('avi', 'AVI film', 'no', 'no'),
  ('mov', 'QuickTime film', 'no', 'no'),
  ('wmv', 'Windows Media film', 'no', 'no'),
  ('webm', 'WebM film', 'no', 'no'),
  ('mkv', 'Matroska film', 'no', 'no'),
  ('zip', 'Zip archive', 'no', 'no'),
  ('rar', 'RAR archive', 'no', 'no'),
  ('7z', '7-Zip archive', 'no', 'no'),
  ('gz', 'Gzip archive', 'no', 'no'),
  ('tgz', 'Compressed tape archive', 'no', 'no'),
  ('tar', 'Tape archive', 'no', 'no'),
  ('pdf', 'Portable document', 'no', 'no'),
  ('txt', 'Plain text', 'no', 'no'),
  ('rtf', 'Rich text document', 'no', 'no'),
  ('doc', 'Word document', 'no', 'no'),
  ('docx', 'Word document', 'no', 'no'),
  ('xls', 'Excel workbook', 'no', 'no'),
  ('xlsx', 'Excel workbook', 'no', 'no'),
  ('ppt', 'PowerPoint presentation', 'no', 'no'),
  ('odt', 'OpenDocument text', 'no', 'no'),
  ('epub', 'Electronic book', 'no', 'no');

-- With a star: found in any spelling, at any place in its tag. Not link and script: they bring no file that a user wants.
insert into valid_tag (tag) values
  ('<a * href='), ('<area * href='),
  ('<frame * src='), ('<iframe * src='),
  ('<img * src='), ('<img * srcset='), ('<img * data-src='),
  ('<source * src='), ('<source * srcset='),
  ('<video * src='), ('<video * poster='), ('<audio * src='),
  ('<embed * src='), ('<object * data='), ('<input * src='),
  ('<body * background='), ('<table * background='), ('<td * background='),
  ('<body * style='), ('<div * style='), ('<section * style='), ('<header * style='), ('<figure * style='),
  ('<a * style='), ('<span * style='), ('<li * style='), ('<td * style='), ('<style * url='),
  ('<meta * content=');

insert into form (id, name, description, form_type) values
  (20, 'User Name and Password',
   'For a web site whose pages ask the browser for a user name and a password.', 'Authentication'),
  (21, 'Password and User Name',
   'For a web site whose pages ask the browser for a password and a user name; the password is entered first.',
   'Authentication'),
  (24, '***None***', 'The web site needs no login.', 'Authentication');

-- Forms are searched in lower case: a search string in capitals never occurs in a page, so the user name and password
-- of these forms go out with the requests and are never sent to a form that happens to stand in a page.
insert into field_info
  (id, form_id, name, logical_number, search_string, supplied_by_user, prompt, field_name, field_value) values
  (17, 20, 'User name', '1', 'HTTP AUTHENTICATION', 'yes', 'User name', 'username', ''),
  (18, 20, 'Password', '2', 'HTTP AUTHENTICATION', 'yes', 'Password', 'password', ''),
  (19, 21, 'Password', '1', 'HTTP AUTHENTICATION', 'yes', 'Password', 'password', ''),
  (20, 21, 'User name', '2', 'HTTP AUTHENTICATION', 'yes', 'User name', 'username', '');
