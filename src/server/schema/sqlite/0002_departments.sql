-- 0002_departments.sql
-- Why: the register of departments, whose chiefs decide at the highest levels of approval.

create table Department (
  Code      integer not null primary key,
  Name      text not null,
  Name2     text,
  FoldName  text not null,
  FoldName2 text,
  -- Login of the user who heads the department.
  Chief     text not null references WSysUsers (ShortName)
) strict;
create index DepartmentByFoldName on Department (FoldName, Code);
create index DepartmentByFoldName2 on Department (FoldName2, Code);
create index DepartmentByChief on Department (Chief);
