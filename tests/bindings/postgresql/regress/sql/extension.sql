-- The extension, and what the planner is told about its functions.
CREATE EXTENSION kx_fdn;
SELECT fdn_version();
SELECT p.oid::regprocedure AS function, pg_get_function_result(p.oid) AS gives,
       provolatile = 'i' AS immutable, proisstrict AS strict, proparallel = 's' AS parallel, procost AS cost
  FROM pg_proc p JOIN pg_depend d ON d.classid = 'pg_proc'::regclass AND d.objid = p.oid
  JOIN pg_extension e ON d.refclassid = 'pg_extension'::regclass AND d.refobjid = e.oid
 WHERE extname = 'kx_fdn' ORDER BY p.proname;
-- It can be moved, dropped, and created by whoever may create objects in the database.
CREATE SCHEMA fdn;
ALTER EXTENSION kx_fdn SET SCHEMA fdn;
SELECT fdn.fdn_ne('NE=5'), (fdn.fdn_port('NE=5,PP=16||7|')).port;
DROP EXTENSION kx_fdn;
DROP SCHEMA fdn;
CREATE ROLE integrator;
GRANT CREATE ON DATABASE contrib_regression TO integrator;
GRANT CREATE ON SCHEMA public TO integrator;
SET ROLE integrator;
CREATE EXTENSION kx_fdn;
SELECT fdn_kind('NE=5');
RESET ROLE;
-- NULL in, NULL out.
SELECT fdn_type(NULL), fdn_kind(NULL), fdn_ne(NULL), fdn_get(NULL, 'NE'), fdn_get('NE=5', NULL),
       fdn_number(NULL, 'NE'), fdn_field(NULL, 'neId'), fdn_record(NULL), fdn_problem(NULL);
SELECT fdn_under(NULL, 'NE=5'), fdn_under('NE=5', NULL), fdn_same(NULL, 'NE=5'), fdn_set('NE=5', 'NE', NULL),
       fdn_port(NULL), fb_name(NULL), fb_level(NULL);
