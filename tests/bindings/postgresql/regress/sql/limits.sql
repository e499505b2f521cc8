-- Queries can be stopped, whatever the texts are.
CREATE TEMP TABLE huge AS
    SELECT string_agg('X' || i || '=1', ',') AS up, string_agg('X' || 200001 - i || '=1', ',') AS down
      FROM generate_series(1, 200000) AS i;
SET statement_timeout = '20s';
SELECT fdn_under(up, down), fdn_ne(up), fdn_problem(up), length(fdn_set(up || ',NE=1', 'NE', '12')) FROM huge;
SELECT length(fdn_record('NE=5,PP=16||7|' || repeat('x', 10000000)) ->> 'portLabel');
SELECT length((fdn_port('NE=5,PP=16||7|' || repeat('x', 10000000))).name);
SELECT length(fdn_get('NE=5,PP=16||7|' || repeat('x', 10000000), 'PP:3'));
SET statement_timeout = '300ms';
SELECT count(fdn_record('NE=12,FR=1,S=3,CP=-1,PP=16|1025|' || i || '|')) FROM (SELECT generate_series(1, 1000000000) AS i) AS rows;
SELECT count(fdn_ne('NE=' || i)) FROM (SELECT generate_series(1, 1000000000) AS i) AS rows;
SELECT count(fdn_get('NE=' || i, 'FR')) FROM (SELECT generate_series(1, 1000000000) AS i) AS rows;
-- By another session.
SET client_min_messages = warning;
CREATE EXTENSION dblink;
SELECT dblink_connect('other', format('host=%s port=%s dbname=%s user=%s', current_setting('unix_socket_directories'),
                                      current_setting('port'), current_database(), current_user));
SELECT pid AS other FROM dblink('other', 'SELECT pg_backend_pid()') AS session (pid integer) \gset
RESET statement_timeout;
SELECT dblink_send_query('other', 'SELECT count(fdn_number(''NE='' || i, ''NE''))
                                     FROM (SELECT generate_series(1, 1000000000) AS i) AS rows');
SELECT pg_sleep(0.5);
SELECT pg_cancel_backend(:other);
SELECT * FROM dblink_get_result('other') AS answer (count bigint);
SELECT * FROM dblink_get_result('other') AS answer (count bigint);
SELECT * FROM dblink('other', 'SELECT fdn_ne(''NE=5'')') AS answer (ne integer);
-- The session goes on as before.
SELECT fdn_ne('NE=5');
